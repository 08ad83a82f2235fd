// The shell's keys and menus with real key events, the focus in the editor as when the user types:
// menu mnemonics, F10, switching tabs, full screen; check marks on the current format; Qt's own
// texts in the interface language; window titles as written.
#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/ApplicationIdentity.h"
#include "ui/app/SecondaryWindows.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

class ShellKeysTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (int i = 0; i < 3; ++i)
            app.window().newDocument(u"testo %1"_s.arg(i));
        app.window().show();
        app.window().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
        app.window().selectIndex(0);
        focusEditor();
    }

    void TearDown() override
    {
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
    }

    EditorPane *focusEditor()
    {
        EditorPane *pane = app.window().currentDocument()->editor()->primaryPane();
        pane->setFocus();
        QApplication::processEvents();
        return pane;
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
};

} // namespace

TEST_F(ShellKeysTest, TabSwitchingKeysWorkWithTheFocusInTheEditor)
{
    const struct
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int from;
        int to;
    } cases[] = {
        {Qt::Key_PageDown, Qt::ControlModifier, 0, 1},
        {Qt::Key_PageDown, Qt::ControlModifier, 2, 0}, // round the end
        {Qt::Key_PageUp, Qt::ControlModifier, 1, 0},
        {Qt::Key_PageUp, Qt::ControlModifier, 0, 2},
        {Qt::Key_Tab, Qt::ControlModifier, 1, 2},
        // X11 reports Ctrl+Shift+Tab as Backtab with Shift held.
        {Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, 1, 0},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(QKeySequence(QKeyCombination(c.modifiers, c.key)).toString().toStdString()
                     + " from " + std::to_string(c.from));
        app.window().selectIndex(c.from);
        EditorPane *pane = focusEditor();
        const QString before = pane->text();
        QTest::keyClick(pane, c.key, c.modifiers);
        EXPECT_EQ(app.window().currentIndex(), c.to);
        EXPECT_EQ(pane->text(), before) << "the key reached the text";
    }
}

TEST_F(ShellKeysTest, MenuTitlesHaveDistinctMnemonicsThatOpenTheMenuAndTypeNothing)
{
    QSet<QChar> letters;
    for (QAction *top : app.window().menuBar()->actions()) {
        const QString title = top->text();
        const qsizetype amp = title.indexOf(u'&');
        ASSERT_GE(amp, 0) << title.toStdString();
        const QChar letter = title.at(amp + 1).toLower();
        EXPECT_FALSE(letters.contains(letter)) << title.toStdString();
        letters.insert(letter);
    }

    EditorPane *pane = focusEditor();
    const QString before = pane->text();
    QTest::keyClick(pane, Qt::Key_O, Qt::AltModifier);
    QWidget *popup = QApplication::activePopupWidget();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->objectName(), u"mirtex.menu.encoding"_s);
    EXPECT_EQ(pane->text(), before);
}

// A fresh window: a menu closed by the test (not by the user's Escape) leaves the bar half open.
TEST_F(ShellKeysTest, F10OpensTheFirstMenu)
{
    QTest::keyClick(focusEditor(), Qt::Key_F10);
    QWidget *popup = QApplication::activePopupWidget();
    ASSERT_TRUE(popup);
    EXPECT_EQ(popup->objectName(), u"mirtex.menu.file"_s);
}

TEST_F(ShellKeysTest, FullScreenIsACheckableCommandOnF11)
{
    QAction *full = app.commands().action(u"toggleFullScreen:"_s);
    ASSERT_TRUE(full && full->isCheckable());
    QTest::keyClick(focusEditor(), Qt::Key_F11);
    EXPECT_TRUE(app.window().isFullScreen());
    EXPECT_TRUE(full->isChecked());
    QTest::keyClick(focusEditor(), Qt::Key_F11);
    EXPECT_FALSE(app.window().isFullScreen());
    EXPECT_FALSE(full->isChecked());
}

TEST_F(ShellKeysTest, TheCurrentEncodingLineEndingLanguageAndThemeAreChecked)
{
    CommandRegistry &commands = app.commands();
    auto checked = [&commands](const QString &name, const QString &argument) {
        return commands.action(name, argument)->isChecked();
    };
    DocumentTab *tab = app.window().currentDocument();
    EXPECT_TRUE(checked(u"convertEncoding:"_s, u"4"_s)) << "UTF-8";
    EXPECT_TRUE(checked(u"reopenWithEncoding:"_s, u"4"_s));
    EXPECT_TRUE(checked(u"setLineEnding:"_s, u"lf"_s));
    EXPECT_TRUE(checked(u"setLanguage:"_s, u"text"_s));
    EXPECT_TRUE(checked(u"chooseTheme:"_s, prefs.themeID()));

    ASSERT_TRUE(commands.dispatch(u"setLineEnding:"_s, u"crlf"_s));
    ASSERT_TRUE(commands.dispatch(u"convertEncoding:"_s, u"12"_s));
    EXPECT_FALSE(checked(u"setLineEnding:"_s, u"lf"_s));
    EXPECT_TRUE(checked(u"setLineEnding:"_s, u"crlf"_s));
    EXPECT_FALSE(checked(u"convertEncoding:"_s, u"4"_s));
    EXPECT_TRUE(checked(u"convertEncoding:"_s, tab->document().encoding().id()));

    app.window().selectIndex(1); // another tab, another format
    EXPECT_TRUE(checked(u"setLineEnding:"_s, u"lf"_s));
    EXPECT_TRUE(checked(u"convertEncoding:"_s, u"4"_s));
}

TEST_F(ShellKeysTest, NewKeysAreListedInTheShortcutsWindowTitledAsWritten)
{
    ASSERT_TRUE(app.commands().dispatch(u"showShortcuts:"_s));
    QWidget *window = app.secondaryWindows().find(u"shortcuts"_s);
    ASSERT_TRUE(window);
    EXPECT_EQ(window->windowTitle(), u"Scorciatoie da tastiera"_s);
    auto *list = window->findChild<QTreeWidget *>();
    ASSERT_TRUE(list);
    QMap<QString, QString> rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        rows.insert(list->topLevelItem(i)->text(0), list->topLevelItem(i)->text(1));
    auto keys = [](const char *sequence) {
        return QKeySequence(QString::fromLatin1(sequence)).toString(QKeySequence::NativeText);
    };
    EXPECT_EQ(rows.value(u"Visualizza › Schermo intero"_s), keys("F11"));
    EXPECT_EQ(rows.value(u"Apri la barra dei menu"_s), keys("F10"));
    EXPECT_EQ(rows.value(u"Finestra › Scheda successiva"_s),
              keys("Ctrl+PgDown") + u" / "_s + keys("Ctrl+Tab"));
    EXPECT_EQ(rows.value(u"Finestra › Scheda precedente"_s),
              keys("Ctrl+PgUp") + u" / "_s + keys("Ctrl+Shift+Tab"));

    // Qt appends a display name to every title that does not end with it; none is set.
    ApplicationIdentity::apply();
    const QString name = QCoreApplication::applicationName();
    QCoreApplication::setApplicationName(u"altro"_s);
    EXPECT_EQ(QGuiApplication::applicationDisplayName(), u"altro"_s);
    QCoreApplication::setApplicationName(name);
}

TEST_F(ShellKeysTest, QtsOwnTextsAreInItalian)
{
    const QString catalogue
        = QLibraryInfo::path(QLibraryInfo::TranslationsPath) + u"/qtbase_it.qm"_s;
    if (!QFile::exists(catalogue))
        GTEST_SKIP() << "Qt's Italian texts are not installed (qt6-translations-l10n)";
    // The standard buttons of message boxes and file dialogs.
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Annulla"_s);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Save"), u"Salva"_s);
    EXPECT_EQ(QCoreApplication::translate("QFileDialog", "File &name:"), u"&Nome del file:"_s);
}
