// The search commands and the find panel in the real program: through the registry, the editor's
// one edit path and real Scintilla panes, offscreen.
#include "ui/search/SearchCommands.h"

#include "core/app/Preferences.h"
#include "core/document/Document.h"
#include "core/languages/Language.h"
#include "core/search/FindModel.h"
#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"
#include "support/TextRangePrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/search/FindPanel.h"
#include "ui/search/InDocumentSearch.h"
#include "ui/search/LiveMatchHighlighter.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;
using test::parseMarkup;
using test::toMarkup;

namespace {

const QString kCaffe = u"caffè Caffè CAFFÈ\nriga due 😀 caffè\n\nultima riga"_s;

class SearchCommandsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setBeepSilenced(true);
        app.window().show();
        search = app.window().findChild<SearchCommands *>();
        ASSERT_TRUE(search);
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

    void setQuery(const QString &query, SearchMode mode = SearchMode::normal)
    {
        model().update([&](FindFields &f) {
            f.query = query;
            f.mode = mode;
        });
    }

    FindModel &model() { return app.findModel(); }

    bool run(const char *command) { return app.commands().dispatch(QString::fromLatin1(command)); }

    static void undo(EditorView *editor)
    {
        editor->primaryPane()->undo();
        QCoreApplication::processEvents();
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
    SearchCommands *search = nullptr;
};

} // namespace

TEST_F(SearchCommandsTest, FindNextAndPreviousSelectEachMatchAndWrap)
{
    const struct
    {
        const char *command;
        QString query;
        SearchMode mode;
        QString before;
        std::vector<QString> visits; // the text with its selection after each command
        QString lastStatus;
    } cases[] = {
        // Four occurrences, the fifth find returns to the first.
        {"findNext:",
         u"caffè"_s,
         SearchMode::normal,
         u"|"_s + kCaffe,
         {u"[caffè|] Caffè CAFFÈ\nriga due 😀 caffè\n\nultima riga"_s,
          u"caffè [Caffè|] CAFFÈ\nriga due 😀 caffè\n\nultima riga"_s,
          u"caffè Caffè [CAFFÈ|]\nriga due 😀 caffè\n\nultima riga"_s,
          u"caffè Caffè CAFFÈ\nriga due 😀 [caffè|]\n\nultima riga"_s,
          u"[caffè|] Caffè CAFFÈ\nriga due 😀 caffè\n\nultima riga"_s},
         u"Ricerca ripartita dall'inizio."_s},
        {"findPrevious:",
         u"riga"_s,
         SearchMode::normal,
         u"riga due\n|ultima riga"_s,
         {u"[riga|] due\nultima riga"_s, u"riga due\nultima [riga|]"_s},
         u"Ricerca ripartita dalla fine."_s},
        // An empty match at the caret does not pin it.
        {"findNext:",
         u"^"_s,
         SearchMode::regex,
         u"|ab\ncd\n"_s,
         {u"ab\n|cd\n"_s, u"|ab\ncd\n"_s}, // no line start after the last LF
         u"Ricerca ripartita dall'inizio."_s},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.query.toStdString());
        EditorView *editor = open(c.before);
        setQuery(c.query, c.mode);
        for (const QString &visit : c.visits) {
            ASSERT_TRUE(run(c.command));
            EXPECT_EQ(shown(editor), visit);
        }
        EXPECT_EQ(model().fields().status, c.lastStatus);
        EXPECT_FALSE(model().fields().statusIsError);
        EXPECT_EQ(model().history().value(0), c.query);
    }

    open(u"|abc"_s);
    setQuery(u"zzz"_s);
    const int beeps = beepCount();
    run("findNext:");
    EXPECT_EQ(model().fields().status, u"Nessun risultato per “zzz”."_s);
    EXPECT_TRUE(model().fields().statusIsError);
    setQuery(u"("_s, SearchMode::regex);
    run("findNext:");
    EXPECT_TRUE(model().fields().status.startsWith(u"Espressione non valida: ("_s));
    EXPECT_EQ(beepCount(), beeps + 1); // nothing found is no failure; a bad pattern is
}

TEST_F(SearchCommandsTest, AMatchInFoldedTextIsRevealedBeforeItIsSelected)
{
    EditorView *editor = open(u"|{\n  a\n  needle\n}\nafter"_s);
    editor->setLanguage(Language::byId(u"c"_s));
    editor->folding().detectNow();
    ASSERT_TRUE(editor->folding().fold(0));
    setQuery(u"needle"_s);
    run("findNext:");
    EXPECT_EQ(editor->selection(), (TextRange{8, 6}));
    EXPECT_FALSE(editor->folding().isFolded(0));
}

TEST_F(SearchCommandsTest, ReplacementsAreOneNamedUndoStepThatRestoresTheText)
{
    const struct
    {
        const char *command;
        QString query;
        QString replacement;
        SearchMode mode;
        QString before;
        QString after;
        QString label;
        QString status;
    } cases[] = {
        {"replaceAll:",
         u"caffè"_s,
         u"tè"_s,
         SearchMode::normal,
         u"ab|c "_s + kCaffe,
         u"ab|c tè tè tè\nriga due 😀 tè\n\nultima riga"_s,
         u"Sostituisci tutto"_s,
         u"4 sostituzioni."_s},
        {"replaceAll:",
         uR"((\d+)-(\d+))"_s,
         uR"(\2/\1)"_s,
         SearchMode::regex,
         u"|1-2 x 30-40"_s,
         u"|2/1 x 40/30"_s,
         u"Sostituisci tutto"_s,
         u"2 sostituzioni."_s},
        // The selection is replaced, then the next match selected.
        {"replace:",
         u"a"_s,
         u"XY"_s,
         SearchMode::normal,
         u"[a|] b a"_s,
         u"XY b [a|]"_s,
         u"Sostituisci"_s,
         u""_s},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.query.toStdString());
        EditorView *editor = open(c.before);
        setQuery(c.query, c.mode);
        model().update([&](FindFields &f) { f.replacement = c.replacement; });
        ASSERT_TRUE(run(c.command));
        EXPECT_EQ(shown(editor), c.after);
        EXPECT_EQ(editor->undoLabel(), c.label);
        EXPECT_EQ(model().fields().status, c.status);
        undo(editor);
        EXPECT_EQ(editor->text(), parseMarkup(c.before).text);
        EXPECT_EQ(editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_CANUNDO), 0);
    }
}

TEST_F(SearchCommandsTest, ReadOnlyDocumentsRefuseReplacementsWithABeep)
{
    EditorView *editor = open(u"[a|] a a"_s);
    app.window().currentDocument()->document().setReadOnly(true);
    setQuery(u"a"_s);
    model().update([](FindFields &f) { f.replacement = u"b"_s; });
    for (const char *command : {"replace:", "replaceAll:"}) {
        const int beeps = beepCount();
        run(command);
        EXPECT_EQ(beepCount(), beeps + 1) << command;
        EXPECT_EQ(shown(editor), u"[a|] a a"_s);
        EXPECT_EQ(model().fields().status, u"Il documento è in sola lettura."_s);
        EXPECT_TRUE(model().fields().statusIsError);
    }
    // Reading commands still work.
    run("countMatches:");
    EXPECT_EQ(model().fields().status, u"3 occorrenze."_s);
}

TEST_F(SearchCommandsTest, MarkAllMarksAndBookmarksTheLinesThenClearMarksKeepsBookmarks)
{
    EditorView *editor = open(u"|uno\ndue x\nx tre x\nquattro"_s);
    EditorAnnotations &annotations = editor->annotations();
    annotations.setBookmarkedLines({3});
    setQuery(u"x"_s);
    model().update([](FindFields &f) { f.bookmarkLines = true; });
    run("markAll:");
    EXPECT_EQ(annotations.model().markRanges, (std::vector<TextRange>{{8, 1}, {10, 1}, {16, 1}}));
    EXPECT_EQ(annotations.bookmarkedLines(), (std::vector<qsizetype>{1, 2, 3}));
    EXPECT_EQ(model().fields().status, u"3 occorrenze contrassegnate."_s);

    // Without bookmarking, marks replace the earlier ones and bookmarks stay.
    model().update([](FindFields &f) {
        f.bookmarkLines = false;
        f.query = u"uno"_s;
    });
    run("markAll:");
    EXPECT_EQ(annotations.model().markRanges, (std::vector<TextRange>{{0, 3}}));
    EXPECT_EQ(annotations.bookmarkedLines(), (std::vector<qsizetype>{1, 2, 3}));

    run("clearMarks:");
    EXPECT_TRUE(annotations.model().markRanges.empty());
    EXPECT_EQ(annotations.bookmarkedLines(), (std::vector<qsizetype>{1, 2, 3}));
    EXPECT_EQ(model().fields().status, u"Contrassegni cancellati."_s);
}

TEST_F(SearchCommandsTest, TheWordAtTheCaretBecomesTheQuery)
{
    EditorView *editor = open(u"alfa be|ta gamma beta"_s);
    ASSERT_TRUE(run("findWordAtCaret:"));
    EXPECT_EQ(model().fields().query, u"beta"_s);
    EXPECT_EQ(shown(editor), u"alfa beta gamma [beta|]"_s);
    open(u"[gam|]ma gamma"_s);
    run("findWordAtCaret:");
    EXPECT_EQ(model().fields().query, u"gam"_s);
    EXPECT_EQ(model().history().value(0), u"gam"_s);
}

TEST_F(SearchCommandsTest, BackgroundWorkIsAppliedOnlyToTheTextItStartedFrom)
{
    InDocumentSearch &runner = search->search();
    runner.setBackgroundThreshold(0);
    const QString text = QString(u"abc "_s).repeated(20'000);
    const auto wait = [&] {
        QSignalSpy ended(&runner, &InDocumentSearch::jobEnded);
        return runner.isRunning() ? ended.wait(20'000) : true;
    };

    EditorView *editor = open(u"|"_s + text);
    setQuery(u"b"_s);
    model().update([](FindFields &f) { f.replacement = u"XX"_s; });
    run("replaceAll:");
    ASSERT_TRUE(wait());
    EXPECT_EQ(model().fields().status, u"20000 sostituzioni."_s);
    EXPECT_EQ(editor->text().count(u"aXXc"_s), 20'000);
    EXPECT_EQ(editor->undoLabel(), u"Sostituisci tutto"_s);
    undo(editor);
    EXPECT_EQ(editor->text(), text);

    // Cancelled: nothing changes, not even later when the worker reports.
    run("replaceAll:");
    ASSERT_TRUE(runner.isRunning());
    ASSERT_TRUE(run("cancelSearch:"));
    EXPECT_FALSE(runner.isRunning());
    EXPECT_EQ(model().fields().status, u"Operazione annullata."_s);
    EXPECT_FALSE(model().fields().isBusy);
    QTest::qWait(200);
    EXPECT_EQ(editor->text(), text);
    EXPECT_EQ(editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_CANUNDO), 0);

    // Edited meanwhile: the stale result is dropped.
    run("markAll:");
    editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_INSERTTEXT, uintptr_t(0), "z");
    ASSERT_TRUE(wait());
    EXPECT_TRUE(editor->annotations().model().markRanges.empty());
    EXPECT_TRUE(model().fields().statusIsError);

    run("countMatches:");
    ASSERT_TRUE(wait());
    EXPECT_EQ(model().fields().status, u"20000 occorrenze."_s);
}

TEST_F(SearchCommandsTest, ThePanelShowsEachTabsButtonsAndRunsThemByName)
{
    open(u"|uno due uno"_s);
    ASSERT_TRUE(run("showFindPanel:"));
    FindPanel &panel = search->panel();
    ASSERT_TRUE(panel.isVisible());

    const struct
    {
        const char *command;
        FindTab tab;
        std::vector<const char *> buttons;
    } tabs[] = {
        {"showFindPanel:",
         FindTab::find,
         {"findNext:",
          "findPrevious:",
          "countMatches:",
          "findAllInDocument:",
          "findAllInOpenDocuments:",
          "hideFindPanel:"}},
        {"showReplacePanel:",
         FindTab::replace,
         {"findNext:", "replace:", "replaceAll:", "replaceInOpenDocuments:", "hideFindPanel:"}},
        {"showFindInFilesPanel:",
         FindTab::files,
         {"findInFiles:", "replaceInFiles:", "hideFindPanel:"}},
        {"showMarkPanel:", FindTab::mark, {"markAll:", "clearMarks:", "hideFindPanel:"}},
    };

    const char *every[] = {"findNext:",
                           "findPrevious:",
                           "countMatches:",
                           "findAllInDocument:",
                           "findAllInOpenDocuments:",
                           "replace:",
                           "replaceAll:",
                           "replaceInOpenDocuments:",
                           "findInFiles:",
                           "replaceInFiles:",
                           "markAll:",
                           "clearMarks:",
                           "hideFindPanel:"};
    for (const auto &t : tabs) {
        SCOPED_TRACE(t.command);
        run(t.command);
        EXPECT_EQ(model().fields().tab, t.tab);
        for (const char *name : every) {
            QPushButton *button = panel.button(QString::fromLatin1(name));
            ASSERT_TRUE(button) << name;
            const bool expected = std::find_if(t.buttons.begin(),
                                               t.buttons.end(),
                                               [&](const char *b) { return qstrcmp(b, name) == 0; })
                                  != t.buttons.end();
            EXPECT_EQ(button->isVisibleTo(&panel), expected) << name;
            // A button is enabled exactly when its command is registered.
            if (expected) {
                EXPECT_EQ(button->isEnabled(),
                          app.commands().find(QString::fromLatin1(name)) != nullptr)
                    << name;
            }
        }
    }

    // Typing goes into the model; Enter finds the next match on the find tab; the buttons
    // dispatch through the registry, where a macro recorder would hear them.
    run("showFindPanel:");
    QStringList heard;
    app.commands().addListener([&](const QString &name, const QVariant &) { heard << name; });
    panel.queryField()->clear();
    QTest::keyClicks(panel.queryField(), u"uno"_s);
    EXPECT_EQ(model().fields().query, u"uno"_s);
    QTest::keyClick(panel.queryField(), Qt::Key_Return);
    EXPECT_EQ(app.window().currentDocument()->editor()->selection(), (TextRange{0, 3}));
    panel.button(u"countMatches:"_s)->click();
    EXPECT_EQ(heard, (QStringList{u"findNext:"_s, u"countMatches:"_s}));
    EXPECT_EQ(panel.statusLabel()->text(), u"2 occorrenze."_s);

    // The status line turns red on errors.
    setQuery(u"zzz"_s);
    panel.button(u"findNext:"_s)->click();
    EXPECT_TRUE(panel.statusLabel()->styleSheet().contains(u"color"_s));

    QTest::keyClick(panel.queryField(), Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(SearchCommandsTest, TheHistoryMenuListsRecentSearchesNewestFirst)
{
    open(u"|a b c"_s);
    run("showFindPanel:");
    FindPanel &panel = search->panel();
    const auto entries = [&] {
        QStringList texts;
        for (QAction *action : panel.historyMenu()->actions())
            texts << action->text();
        return texts;
    };
    EXPECT_EQ(panel.historyMenu()->title(), u"Ricerche recenti"_s);
    EXPECT_EQ(entries(), QStringList{u"Nessuna ricerca recente"_s});
    for (const QString &query : {u"a"_s, u"b"_s, u"a"_s}) {
        setQuery(query);
        run("findNext:");
    }
    EXPECT_EQ(entries(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(prefs.value(u"findHistory"_s).toStringList(), (QStringList{u"a"_s, u"b"_s}));
    panel.historyMenu()->actions().at(1)->trigger();
    EXPECT_EQ(model().fields().query, u"b"_s);
    EXPECT_EQ(panel.queryField()->text(), u"b"_s);
}

TEST_F(SearchCommandsTest, WhileThePanelIsOpenTheVisibleMatchesAreOutlinedAndCounted)
{
    EditorView *editor = open(u"|"_s + kCaffe);
    LiveMatchHighlighter &live = search->highlighter();
    QSignalSpy settled(&live, &LiveMatchHighlighter::settled);
    run("showFindPanel:");
    setQuery(u"caffè"_s);
    ASSERT_TRUE(settled.wait(5000));
    EXPECT_EQ(live.shownRanges(), (std::vector<TextRange>{{0, 5}, {6, 5}, {12, 5}, {30, 5}}));
    EXPECT_EQ(search->panel().counterLabel()->text(), u"4 occorrenze."_s);

    run("findNext:");
    run("findNext:");
    ASSERT_TRUE(settled.wait(5000));
    EXPECT_EQ(search->panel().counterLabel()->text(), u"2 di 4"_s);

    // Typing in the text moves the outlines with it.
    editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_INSERTTEXT, uintptr_t(0), "caffè ");
    ASSERT_TRUE(settled.wait(5000));
    EXPECT_EQ(live.shownRanges().size(), 5u);

    // An invalid pattern or a closed panel outlines nothing.
    setQuery(u"("_s, SearchMode::regex);
    ASSERT_TRUE(settled.wait(5000));
    EXPECT_TRUE(live.shownRanges().empty());
    setQuery(u"riga"_s);
    ASSERT_TRUE(settled.wait(5000));
    EXPECT_EQ(live.shownRanges().size(), 2u);
    run("hideFindPanel:");
    EXPECT_TRUE(live.shownRanges().empty());
}

TEST_F(SearchCommandsTest, LongWorkShowsItselfBusyAndEscapeCancelsIt)
{
    // Every start position scans to the end of its line and fails: each within the time limit,
    // all of them far too long to finish.
    const QString text = QString(QString(u"ab"_s).repeated(300) + u'\n').repeated(10'000);
    EditorView *editor = open(u"|"_s + text);
    run("showReplacePanel:");
    FindPanel &panel = search->panel();
    EXPECT_EQ(panel.focusWidget(), panel.queryField()); // the focus within the panel
    setQuery(u"(?:[ab])*[^ab\\n]"_s, SearchMode::regex);
    model().update([](FindFields &f) { f.replacement = u"x"_s; });
    run("replaceAll:");
    ASSERT_TRUE(search->search().isRunning());
    EXPECT_FALSE(model().fields().isBusy); // not at once
    ASSERT_TRUE(QTest::qWaitFor([&] { return model().fields().isBusy; }, 5000));
    EXPECT_EQ(model().fields().status, u"Sostituzione in corso…"_s);
    EXPECT_TRUE(panel.button(u"replaceAll:"_s)->isVisible());
    QTest::keyClick(panel.queryField(), Qt::Key_Escape);
    EXPECT_FALSE(search->search().isRunning());
    EXPECT_FALSE(model().fields().isBusy);
    EXPECT_TRUE(panel.isVisible()); // Esc stopped the work, not the panel
    EXPECT_EQ(model().fields().status, u"Operazione annullata."_s);
    EXPECT_EQ(editor->text(), text);
    EXPECT_EQ(editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_CANUNDO), 0);
}
