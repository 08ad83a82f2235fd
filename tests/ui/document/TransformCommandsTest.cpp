// Line operations, case conversions and text tools in the real program: through the registry and
// the editor's one edit path, one undo step named by the menu label that restores text and
// carets, no step when nothing changes, a beep on read-only documents and invalid input, and the
// digest computed away from the main thread.
#include "core/app/Preferences.h"
#include "core/document/Document.h"
#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;
using test::parseMarkup;
using test::toMarkup;

namespace {

class TransformCommandsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setBeepSilenced(true);
        app.window().show();
    }

    EditorView *open(const QString &markup)
    {
        const test::MarkedText marked = parseMarkup(markup);
        DocumentTab *tab = app.window().newDocument(marked.text);
        tab->editor()->setSelections(marked.selections);
        return tab->editor();
    }

    static QString shown(EditorView *editor)
    {
        return toMarkup(editor->text(), editor->selections());
    }

    static bool canUndo(EditorView *editor)
    {
        return editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_CANUNDO) != 0;
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
};

} // namespace

TEST_F(TransformCommandsTest, EachCommandIsOneNamedUndoStepAtEveryCaret)
{
    const struct
    {
        const char *command;
        const char *argument;
        QString before;
        QString after; // empty: nothing changes and no undo step is added
        QString label;
    } cases[] = {
        {"convertCase:",
         "upper",
         u"|let a = 1\nlet b = 2\n|let c = 3\nlet d = 4"_s,
         u"[LET|] a = 1\nlet b = 2\n[LET|] c = 3\nlet d = 4"_s,
         u"MAIUSCOLO"_s},
        {"applyLineOperation:",
         "sortAscending",
         u"c\nb|\na😀\n"_s,
         u"[a😀\nb\nc\n|]"_s,
         u"Ordina in modo crescente"_s},
        {"applyLineOperation:",
         "sortNumericAscending",
         u"x\n[10\n9|]\n-1"_s,
         u"x\n[9\n10\n|]-1"_s,
         u"Ordina come numeri, crescente"_s},
        {"applyLineOperation:",
         "removeDuplicates",
         u"a\nb\na|"_s,
         u"[a\nb|]"_s,
         u"Rimuovi le righe duplicate"_s},
        {"applyLineOperation:", "sortAscending", u"a\nb|"_s, u""_s, {}},
        {"applyTextTool:", "jsonMinify", u"\\[ 1, 2 \\]|"_s, u"[\\[1,2\\]|]"_s, u"Comprimi JSON"_s},
        {"applyTextTool:",
         "urlEncode",
         u"[a b|] [c/d|]"_s,
         u"[a%20b|] [c%2Fd|]"_s,
         u"Codifica URL"_s},
        {"applyTextTool:", "htmlDecode", u"niente|"_s, u""_s, {}},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.argument) + ": " + c.before.toStdString());
        EditorView *editor = open(c.before);
        const int beeps = beepCount();
        ASSERT_TRUE(app.commands().dispatch(QString::fromLatin1(c.command),
                                            QString::fromLatin1(c.argument)));
        EXPECT_EQ(beepCount(), beeps);
        if (c.after.isEmpty()) {
            EXPECT_EQ(shown(editor), c.before);
            EXPECT_FALSE(canUndo(editor));
            continue;
        }
        EXPECT_EQ(shown(editor), c.after);
        EXPECT_EQ(editor->undoLabel(), c.label);
        editor->primaryPane()->undo();
        QCoreApplication::processEvents();
        EXPECT_EQ(shown(editor), c.before);
        EXPECT_FALSE(canUndo(editor));
        editor->primaryPane()->redo();
        QCoreApplication::processEvents();
        EXPECT_EQ(shown(editor), c.after);
    }
}

TEST_F(TransformCommandsTest, ReadOnlyDocumentsAndInvalidInputBeepAndChangeNothing)
{
    EditorView *editor = open(u"YW*j|"_s);
    int beeps = beepCount();
    app.commands().dispatch(u"applyTextTool:"_s, u"base64Decode"_s);
    EXPECT_EQ(beepCount(), beeps + 1);
    EXPECT_EQ(shown(editor), u"YW*j|"_s);
    EXPECT_FALSE(canUndo(editor));

    app.window().currentDocument()->document().setReadOnly(true);
    beeps = beepCount();
    for (const auto &[command, argument] : {std::pair{"applyLineOperation:", "reverse"},
                                            std::pair{"convertCase:", "upper"},
                                            std::pair{"applyTextTool:", "base64Encode"},
                                            std::pair{"insertDateTime:", "long"}})
        app.commands().dispatch(QString::fromLatin1(command), QString::fromLatin1(argument));
    EXPECT_EQ(beepCount(), beeps + 4);
    EXPECT_EQ(shown(editor), u"YW*j|"_s);
}

TEST_F(TransformCommandsTest, TheDigestIsShownWithCopia)
{
    open(u"x[abc|]y"_s);
    questions.pushAnswer(u"Copia"_s);
    ASSERT_TRUE(app.commands().dispatch(u"computeHash:"_s, u"md5"_s));
    EXPECT_TRUE(QTest::qWaitFor([&]() { return !questions.asked().empty(); }, 5000));
    ASSERT_EQ(questions.asked().size(), 1u);
    EXPECT_EQ(questions.asked().front().message, u"MD5 della selezione"_s);
    EXPECT_EQ(questions.asked().front().informative, u"900150983cd24fb0d6963f7d28e17f72"_s);
    EXPECT_EQ(questions.asked().front().buttons, (QStringList{u"Copia"_s, u"Chiudi"_s}));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"900150983cd24fb0d6963f7d28e17f72"_s);
}

TEST_F(TransformCommandsTest, MenusAndKeysReachTheCommands)
{
    auto *lines = app.window().menuBar()->findChild<QMenu *>(u"mirtex.menu.lineOperations"_s);
    auto *cases = app.window().menuBar()->findChild<QMenu *>(u"mirtex.menu.caseConversions"_s);
    ASSERT_TRUE(lines && cases);
    EXPECT_EQ(lines->title(), u"Operazioni sulle righe"_s);
    EXPECT_EQ(cases->title(), u"Maiuscole e minuscole"_s);
    const auto entries = [](QMenu *menu) {
        QStringList texts;
        for (QAction *action : menu->actions()) {
            if (!action->isSeparator())
                texts.append(action->text());
        }
        return texts;
    };
    EXPECT_EQ(entries(lines).size(), 18);
    EXPECT_EQ(entries(cases).size(), 6);
    EXPECT_EQ(entries(lines).front(), u"Ordina in modo crescente"_s);

    EditorView *editor = open(u"b\na|"_s);
    app.window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
    editor->activePane()->setFocus();
    QTest::keyClick(editor->activePane(), Qt::Key_F9);
    EXPECT_EQ(editor->text(), u"a\nb"_s);
    QTest::keyClick(editor->activePane(), Qt::Key_K, Qt::ControlModifier);
    QTest::keyClick(editor->activePane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(editor->text(), u"A\nB"_s);
}
