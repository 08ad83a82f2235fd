// One look for the whole application: a dark theme (or the automatic one on a dark desktop)
// reaches windows, dialogs and menus that are not the main window, and going back to a light
// theme brings the desktop's palette back; the status bar keeps its text off the window's edges.
#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/AppearanceController.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/MainWindow.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

bool looksDark(const QWidget &widget)
{
    const QPalette &p = widget.palette();
    return p.color(QPalette::Window).lightness() < 128 && p.color(QPalette::Base).lightness() < 128
           && p.color(QPalette::WindowText).lightness() > 128
           && p.color(QPalette::ButtonText).lightness() > 128;
}

class AppearanceTest : public ::testing::Test
{
protected:
    void TearDown() override { prefs.setThemeID(u"classic"_s); }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
};

} // namespace

TEST_F(AppearanceTest, TheThemeReachesEveryWindowDialogAndMenu)
{
    ASSERT_FALSE(AppearanceController::systemIsDark()) << "the offscreen desktop is light";

    const struct
    {
        QString themeId;
        bool dark;
    } cases[] = {
        {u"dark"_s, true},
        {u"classic"_s, false},
        {u"dracula"_s, true},
        {u"solarized-dark"_s, true},
        {u"auto"_s, false},
        {u"solarized-light"_s, false},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.themeId.toStdString());
        prefs.setThemeID(c.themeId);
        QMessageBox alert;
        QMenu menu;
        QWidget settings;
        EXPECT_EQ(looksDark(alert), c.dark);
        EXPECT_EQ(looksDark(menu), c.dark);
        EXPECT_EQ(looksDark(settings), c.dark);
        EXPECT_EQ(looksDark(app.window()), c.dark);
        // The desktop's own appearance is still known while the theme's palette is shown, so
        // "auto" and the settings window resolve against the desktop, not against the theme.
        EXPECT_FALSE(AppearanceController::systemIsDark());
    }
}

TEST_F(AppearanceTest, TheStatusBarKeepsItsTextOffTheWindowsEdges)
{
    app.window().newDocument();
    app.window().resize(900, 500);
    app.window().show();
    QApplication::processEvents();
    QStatusBar *bar = app.window().statusBar();
    int left = bar->width();
    int right = 0;
    for (QWidget *item : bar->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (!item->isVisible()
            || !(qobject_cast<QLabel *>(item) || qobject_cast<QToolButton *>(item)))
            continue;
        left = std::min(left, item->geometry().left());
        right = std::max(right, item->geometry().right());
    }
    EXPECT_GE(left, 6);
    EXPECT_LE(right, bar->width() - 6);
    // The caret's text does not touch its own edges either.
    const QLabel *caret = bar->findChild<QLabel *>();
    ASSERT_TRUE(caret);
    EXPECT_GE(caret->contentsMargins().left(), 4);
    app.window().hide();
}
