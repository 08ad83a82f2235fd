// The "Confronta" commands as the program runs them: from the menus, on real tabs and the real
// clipboard.
#include "ui/compare/CompareCommands.h"

#include "core/app/Preferences.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/MainMenu.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/compare/CompareWindow.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirtex {

namespace {

class CompareCommandsTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    Preferences prefs{dir.filePath(QStringLiteral("settings.conf"))};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};

    QList<CompareWindow *> windows() const
    {
        return app.window().findChildren<CompareWindow *>(QString(), Qt::FindDirectChildrenOnly);
    }
};

TEST_F(CompareCommandsTest, TabsSavedFileAndClipboard)
{
    const QString path = dir.filePath(QStringLiteral("prova.txt"));
    writeFile(path, "uno\ndue\n");
    ASSERT_TRUE(app.flows().openPath(path));
    DocumentTab *file = app.window().currentDocument();
    file->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_APPENDTEXT, 4, "tre\n");
    DocumentTab *untitled = app.window().newDocument();

    // The Strumenti menu holds the submenu; its tab list names the other tabs.
    QMenu *compare = app.menu()
                         .menu(QStringLiteral("mirtex.menu.tools"))
                         ->findChild<QMenu *>(QStringLiteral("mirtex.menu.compare"));
    ASSERT_NE(compare, nullptr);
    Q_EMIT compare->aboutToShow();
    QMenu *withTab = compare->findChild<QMenu *>(QStringLiteral("mirtex.menu.compareWithTab"));
    ASSERT_NE(withTab, nullptr);
    ASSERT_EQ(withTab->actions().size(), 1);
    EXPECT_EQ(withTab->actions()[0]->text(), QStringLiteral("prova.txt"));

    withTab->actions()[0]->trigger();
    ASSERT_EQ(windows().size(), 1);
    EXPECT_EQ(
        windows()[0]->findChild<QLabel *>(QStringLiteral("mirtex.compare.rightHeader"))->text(),
        path);

    // The unsaved line shows against the file on disk.
    app.window().selectIndex(0);
    ASSERT_TRUE(app.commands().dispatch(QStringLiteral("compareWithSavedFile:")));
    ASSERT_EQ(windows().size(), 2);
    EXPECT_EQ(windows()[1]->totalsText(), QStringLiteral("+1 −0"));
    EXPECT_FALSE(app.commands().isEnabled(QStringLiteral("compareWithSavedFile:"), 1))
        << "untitled";

    // The clipboard: a text is compared, an image or nothing is explained.
    QApplication::clipboard()->clear();
    ASSERT_TRUE(app.commands().dispatch(QStringLiteral("compareWithClipboard:")));
    auto *image = new QMimeData;
    image->setImageData(QImage(4, 4, QImage::Format_RGB32));
    QApplication::clipboard()->setMimeData(image);
    ASSERT_TRUE(app.commands().dispatch(QStringLiteral("compareWithClipboard:")));
    ASSERT_EQ(questions.asked().size(), 2u);
    EXPECT_EQ(questions.asked()[0].message, QStringLiteral("Gli appunti sono vuoti."));
    EXPECT_EQ(questions.asked()[1].message, QStringLiteral("Gli appunti contengono un'immagine."));
    EXPECT_EQ(windows().size(), 2);
    QApplication::clipboard()->setText(QStringLiteral("uno\r\ndue\r\ntre\r\n"));
    ASSERT_TRUE(app.commands().dispatch(QStringLiteral("compareWithClipboard:")));
    ASSERT_EQ(windows().size(), 3);
    EXPECT_EQ(windows()[2]->positionText(), QStringLiteral("nessuna differenza"));
    (void)untitled;
}

} // namespace

} // namespace mirtex
