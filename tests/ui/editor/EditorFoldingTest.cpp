// Folding in real panes: hidden lines in both panes of a split, the text never changed, carets
// moved out of hidden text, the panes' hidden lines in step with the folds through random edits,
// clicks on the gutter marker and on the placeholder box, and the commands with their keys.
#include "ui/editor/EditorFolding.h"

#include "core/app/Preferences.h"
#include "core/languages/Language.h"
#include "support/QStringPrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/WindowSession.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <random>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

using Sci = QsciScintillaBase;

const QString kNested = u"func f() {\n    if a {\n        b()\n    }\n}\nx\n"_s;

// Which lines of the pane are shown, as a string of 1 (shown) and 0 (hidden).
std::string shownLines(EditorPane *pane)
{
    std::string out;
    const long lines = pane->SendScintilla(Sci::SCI_GETLINECOUNT);
    for (long line = 0; line < lines; ++line)
        out += pane->SendScintilla(Sci::SCI_GETLINEVISIBLE, line) ? '1' : '0';
    return out;
}

class EditorFoldingTest : public ::testing::Test
{
protected:
    void load(const QString &text, const char *languageId)
    {
        editor.loadText(text.toUtf8());
        editor.setLanguage(Language::byId(QString::fromLatin1(languageId)));
        editor.folding().detectNow();
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    EditorView editor{prefs};
};

} // namespace

TEST_F(EditorFoldingTest, FoldingHidesLinesInBothPanesAndNeverChangesTheText)
{
    load(kNested, "swift");
    editor.setSelection({kNested.indexOf(u"b()"), 0});
    EXPECT_TRUE(editor.folding().fold(0));
    EXPECT_EQ(shownLines(editor.primaryPane()), "1000011");
    // The caret was inside: it goes to the end of the header line.
    EXPECT_EQ(editor.caretOffset(), 10);
    editor.setSplit(Qt::Vertical);
    EXPECT_EQ(shownLines(editor.secondaryPane()), "1000011");
    EXPECT_EQ(editor.text(), kNested);

    EXPECT_TRUE(editor.folding().unfoldAll());
    EXPECT_TRUE(editor.folding().foldLevel(2)); // only "if a {"
    EXPECT_EQ(shownLines(editor.primaryPane()), "1100111");
    EXPECT_EQ(shownLines(editor.secondaryPane()), "1100111");

    // Undo after folding restores the text exactly.
    editor.setSelection({0, 0});
    editor.primaryPane()->SendScintilla(Sci::SCI_REPLACESEL, "// ");
    editor.folding().foldAll();
    editor.primaryPane()->undo();
    EXPECT_EQ(editor.text(), kNested);
    EXPECT_EQ(editor.utf8Text(), kNested.toUtf8());
}

// Thousands of blocks fold and unfold at once (the panes take their cheaper ways there): every
// line shown or hidden as the folds say in both panes, the selection, the line at the top and the
// undo history kept, the text unchanged.
TEST_F(EditorFoldingTest, FoldingThousandsOfBlocksKeepsThePanesExact)
{
    QString text;
    for (int i = 0; i < 4000; ++i)
        text += u"func f%1() {\n    if a {\n        b()\n    }\n}\n"_s.arg(i);
    text += u"x\n"_s;
    // Each function's lines shown, by whether its outer block is folded.
    auto shown = [](auto outerFolded) {
        std::string out;
        for (int i = 0; i < 4000; ++i)
            out += outerFolded(i) ? "10000" : "11001";
        return out + "11";
    };
    load(text, "swift");
    EditorPane *pane = editor.primaryPane();
    pane->SendScintilla(Sci::SCI_INSERTTEXT, 0UL, "// ");
    pane->SendScintilla(Sci::SCI_DELETERANGE, 0UL, 3L);
    editor.setSplit(Qt::Vertical);
    const qsizetype caret = text.indexOf(u"func f2000");
    editor.setSelection({caret, 4});

    EXPECT_TRUE(editor.folding().foldAll());
    const std::string allFolded = shown([](int) { return true; });
    EXPECT_EQ(shownLines(pane), allFolded);
    // Every seventh opened one by one, then all of them folded again at once: the lines between
    // them stand as they should (headers shown, other blocks still hidden).
    for (int i = 0; i < 4000; i += 7)
        EXPECT_TRUE(editor.folding().unfold(i * 5));
    EXPECT_EQ(shownLines(pane), shown([](int i) { return i % 7 != 0; }));
    EXPECT_TRUE(editor.folding().foldLevel(1));
    EXPECT_EQ(shownLines(pane), allFolded);
    EXPECT_EQ(shownLines(editor.secondaryPane()), allFolded);

    pane->SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE,
                        pane->SendScintilla(Sci::SCI_VISIBLEFROMDOCLINE, 9000L));
    EXPECT_TRUE(editor.folding().unfoldAll());
    const std::string everyLine(allFolded.size(), '1');
    EXPECT_EQ(shownLines(pane), everyLine);
    EXPECT_EQ(shownLines(editor.secondaryPane()), everyLine);
    EXPECT_EQ(pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE), 9000);
    EXPECT_EQ(editor.selections().main(), Selection(caret, caret + 4));
    EXPECT_EQ(editor.text(), text);
    pane->undo();
    EXPECT_EQ(editor.text(), u"// "_s + text);
}

TEST_F(EditorFoldingTest, RevealOpensTheFoldsAroundATarget)
{
    load(kNested, "swift");
    editor.folding().foldAll();
    EXPECT_TRUE(editor.folding().reveal({kNested.indexOf(u"b()"), 3}));
    EXPECT_EQ(shownLines(editor.primaryPane()), "1111111");
    EXPECT_FALSE(editor.folding().reveal({0, 2}));
}

// Random edits with folds in place: what the panes hide is always what the folds hide, and
// typing inside folded text keeps its fold.
TEST_F(EditorFoldingTest, PanesHideWhatTheFoldsHideThroughEdits)
{
    QString text;
    for (int i = 0; i < 30; ++i)
        text += u"block%1 {\n  a\n  {\n    b\n  }\n}\n"_s.arg(i);
    load(text, "c");
    editor.setSplit(Qt::Horizontal);
    std::mt19937 random(7);
    EditorPane *pane = editor.primaryPane();
    const char *pieces[] = {"x", "\n", "{\n", "}\n", "\n\n", "zz"};
    for (int step = 0; step < 300; ++step) {
        EditorFolding &folding = editor.folding();
        if (step % 10 == 0) {
            folding.detectNow();
            folding.foldLevel(int(random() % 2) + 1);
        }
        const long length = pane->SendScintilla(Sci::SCI_GETLENGTH);
        const long at = long(random() % (length + 1));
        if (random() % 3 == 0 && at < length) {
            pane->SendScintilla(Sci::SCI_DELETERANGE, at, long(std::min<long>(3, length - at)));
        } else {
            pane->SendScintilla(Sci::SCI_INSERTTEXT, at, pieces[random() % 6]);
        }
        std::string expected(std::size_t(pane->SendScintilla(Sci::SCI_GETLINECOUNT)), '1');
        for (const TextRange &hidden : folding.state().hiddenRanges()) {
            const qsizetype first
                = std::max<qsizetype>(1, editor.positions().lineOfUtf16(hidden.location));
            const qsizetype last = editor.positions().lineOfUtf16(hidden.end() - 1);
            for (qsizetype line = first; line <= last; ++line)
                expected[std::size_t(line)] = '0';
        }
        ASSERT_EQ(shownLines(pane), expected) << "step " << step;
        // The second pane moves its own lines after the first reports the edit: it catches up
        // once the edit is complete.
        QCoreApplication::processEvents();
        ASSERT_EQ(shownLines(editor.secondaryPane()), expected) << "step " << step;
    }
    // Typing inside folded text (as replace-all would) keeps the fold.
    load(kNested, "swift");
    editor.folding().fold(0);
    pane->SendScintilla(Sci::SCI_INSERTTEXT, long(kNested.indexOf(u"b()")), "cc\n");
    EXPECT_TRUE(editor.folding().isFolded(0));
    EXPECT_EQ(shownLines(pane), "10000011");
    editor.folding().detectNow();
    EXPECT_TRUE(editor.folding().isFolded(0));
    EXPECT_EQ(shownLines(pane), "10000011");
}

TEST_F(EditorFoldingTest, ClicksOnTheMarkerAndThePlaceholder)
{
    load(kNested, "swift");
    editor.resize(500, 300);
    editor.show();
    EditorPane *pane = editor.primaryPane();
    QCoreApplication::processEvents();
    int marginLeft = 0;
    for (long margin = 0; margin < 2; ++margin)
        marginLeft += int(pane->SendScintilla(Sci::SCI_GETMARGINWIDTHN, margin));
    const int lineHeight = int(pane->SendScintilla(Sci::SCI_TEXTHEIGHT, 0L));
    const QPoint marker(marginLeft + 7, lineHeight / 2);
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, {}, marker);
    EXPECT_TRUE(editor.folding().isFolded(0));
    EXPECT_EQ(shownLines(pane), "1000011");
    // The box sits just after the end of the header line.
    const long end = pane->SendScintilla(Sci::SCI_GETLINEENDPOSITION, 0L);
    const int x = int(pane->SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL, end));
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, {}, QPoint(x + 12, lineHeight / 2));
    EXPECT_FALSE(editor.folding().isFolded(0));
    EXPECT_EQ(shownLines(pane), "1111111");
    EXPECT_EQ(editor.text(), kNested);
}

TEST(FoldCommands, MenuAndKeysFoldTheCurrentTab)
{
    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
    app.window().show();
    DocumentTab *tab = app.window().newDocument();
    EditorView *editor = tab->editor();
    editor->replaceText(kNested.toUtf8());
    tab->setLanguage(Language::byId(u"swift"));
    app.commands().refresh();
    QApplication::processEvents();

    auto *menu = app.window().menuBar()->findChild<QMenu *>(u"mirtex.menu.folding"_s);
    ASSERT_NE(menu, nullptr);
    QStringList labels;
    for (QAction *action : menu->actions()) {
        if (!action->isSeparator())
            labels.append(action->text());
    }
    EXPECT_EQ(labels,
              QStringList({u"Piega il blocco"_s,
                           u"Espandi il blocco"_s,
                           u"Piega tutto"_s,
                           u"Espandi tutto"_s,
                           u"Piega tutto tranne il blocco corrente"_s,
                           u"Piega il livello 1"_s,
                           u"Piega il livello 2"_s,
                           u"Piega il livello 3"_s,
                           u"Piega il livello 4"_s,
                           u"Piega il livello 5"_s}));

    editor->setSelection({kNested.indexOf(u"b()"), 0});
    editor->primaryPane()->setFocus();
    QTest::keyClick(
        editor->primaryPane(), Qt::Key_BracketLeft, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(editor->folding().foldedLines(), std::vector<qint64>{1});
    QTest::keyClick(
        editor->primaryPane(), Qt::Key_BracketRight, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(editor->folding().foldedLines().empty());
    QTest::keyClick(editor->primaryPane(), Qt::Key_K, Qt::ControlModifier);
    QTest::keyClick(editor->primaryPane(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(editor->folding().foldedLines(), std::vector<qint64>({0, 1}));
    EXPECT_TRUE(app.commands().dispatch(u"unfoldAllBlocks:"_s));
    editor->setSelection({kNested.indexOf(u"x"), 0});
    EXPECT_TRUE(app.commands().dispatch(u"foldAllExceptCurrentBlock:"_s));
    EXPECT_EQ(editor->folding().foldedLines(), std::vector<qint64>({0, 1}));
    editor->setSelection({kNested.indexOf(u"if"), 0});
    app.commands().dispatch(u"foldAllExceptCurrentBlock:"_s);
    EXPECT_TRUE(editor->folding().foldedLines().empty());
    EXPECT_EQ(editor->text(), kNested);

    tab->setLanguage(Language::byId(u"text"));
    app.commands().refresh();
    EXPECT_FALSE(app.commands().isEnabled(u"foldAllBlocks:"_s));
}

// The session remembers the folded header lines of each tab and folds them again once the blocks
// of the restored text are known.
TEST(FoldSession, FoldsComeBackAfterARestart)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"a.py"_s);
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("def f():\n    a = 1\n\ndef g():\n    if b:\n        c()\n");
    }
    const QString state = dir.filePath(u"state"_s);
    Preferences prefs{dir.filePath(u"prefs.conf"_s)};
    ScriptedQuestions questions;
    {
        MainWindow window(prefs);
        DocumentFlows flows(window, questions);
        WindowSession session(prefs, state);
        EditorView *editor = flows.openPath(file)->editor();
        editor->folding().detectNow();
        editor->folding().fold(0);
        editor->folding().fold(4);
        session.write(window);
    }
    MainWindow window(prefs);
    DocumentFlows flows(window, questions);
    WindowSession session(prefs, state);
    ASSERT_TRUE(session.restore(flows));
    EditorFolding &folding = window.documents().front()->editor()->folding();
    while (folding.isDetectionPending())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_EQ(folding.foldedLines(), std::vector<qint64>({0, 4}));
    EXPECT_EQ(shownLines(window.documents().front()->editor()->primaryPane()), "1011101");
}

// A tab comes back showing the same line at the top, folds above it included: the scroll position
// is kept in lines as shown, so it is applied once the folds are back.
TEST(FoldSession, TheLineAtTheTopComesBackWithTheFolds)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"a.py"_s);
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        for (int i = 0; i < 30000; ++i)
            out.write(QByteArray("def f") + QByteArray::number(i) + "():\n    a = 1\n    b = 2\n");
    }
    const QString state = dir.filePath(u"state"_s);
    Preferences prefs{dir.filePath(u"prefs.conf"_s)};
    ScriptedQuestions questions;
    auto topLine = [](EditorView *editor) {
        EditorPane *pane = editor->primaryPane();
        return pane->SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE,
                                   pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE));
    };
    for (const long top : {450L, 3L}) {
        {
            MainWindow window(prefs);
            window.resize(800, 600);
            window.show();
            DocumentFlows flows(window, questions);
            WindowSession session(prefs, state);
            EditorView *editor = flows.openPath(file)->editor();
            editor->folding().detectNow();
            for (int block = 0; block < 100; ++block)
                editor->folding().fold(block * 3);
            EditorPane *pane = editor->primaryPane();
            pane->SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE,
                                pane->SendScintilla(Sci::SCI_VISIBLEFROMDOCLINE, top));
            editor->setSelection({editor->text().indexOf(u"def f%1("_s.arg(top / 3)), 0});
            pane->SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE,
                                pane->SendScintilla(Sci::SCI_VISIBLEFROMDOCLINE, top));
            ASSERT_EQ(topLine(editor), top);
            session.write(window);
        }
        // As at start-up: the tabs come back before the window is shown.
        MainWindow window(prefs);
        window.resize(800, 600);
        DocumentFlows flows(window, questions);
        WindowSession session(prefs, state);
        ASSERT_TRUE(session.restore(flows));
        window.show();
        EditorView *editor = window.documents().front()->editor();
        while (editor->folding().isDetectionPending())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QCoreApplication::processEvents();
        EXPECT_EQ(editor->folding().foldedLines().size(), 100u);
        EXPECT_EQ(topLine(editor), top);
    }
}
