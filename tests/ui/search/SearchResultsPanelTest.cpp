// The results panel in the real window: the find-all commands fill it as an outline of sets,
// files and hits, find in files streams into it, a hit opens in its tab (loading a pending one)
// or its file with its range selected, F4 and Shift+F4 walk the hits, and replacing in the open
// documents leaves one undo step in each.
#include "ui/search/SearchResultsPanel.h"

#include "core/app/Preferences.h"
#include "core/document/Document.h"
#include "core/search/FindModel.h"
#include "support/QStringPrinter.h"
#include "support/TextRangePrinter.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/search/SearchResultsModel.h"

#include <QApplication>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

class SearchResultsPanelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setBeepSilenced(true);
        app.window().show();
    }

    DocumentTab *open(const QString &text) { return app.window().newDocument(text); }

    void search(const QString &query, const QString &replacement = {}, bool inSelection = false)
    {
        app.findModel().update([&](FindFields &fields) {
            fields.query = query;
            fields.replacement = replacement;
            fields.inSelection = inSelection;
        });
    }

    SearchResultsPanel &panel() { return app.searchResultsPanel(); }

    SearchResultsModel &model() { return panel().model(); }

    QString rowText(const QModelIndex &index) const { return index.data().toString(); }

    // The texts of every row under `parent`, depth first, indented by level.
    QStringList outline(const QModelIndex &parent = {}, const QString &indent = {}) const
    {
        QStringList rows;
        SearchResultsModel &m = app.searchResultsPanel().model();
        for (int row = 0; row < m.rowCount(parent); ++row) {
            const QModelIndex index = m.index(row, 0, parent);
            rows.append(indent + rowText(index));
            rows.append(outline(index, indent + u"  "_s));
        }
        return rows;
    }

    // As a desktop delivers it: press, release, the double-click press, release.
    static void doubleClick(QWidget *widget, QPoint at)
    {
        const QPointF local(at);
        const QPointF global(widget->mapToGlobal(at));
        for (const QEvent::Type type : {QEvent::MouseButtonPress,
                                        QEvent::MouseButtonRelease,
                                        QEvent::MouseButtonDblClick,
                                        QEvent::MouseButtonRelease}) {
            const Qt::MouseButtons held
                = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
            QMouseEvent event(type, local, global, Qt::LeftButton, held, Qt::NoModifier);
            QApplication::sendEvent(widget, &event);
        }
    }

    static int undoSteps(EditorView *editor)
    {
        int steps = 0;
        for (; editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_CANUNDO); ++steps)
            editor->primaryPane()->SendScintilla(QsciScintillaBase::SCI_UNDO);
        return steps;
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
};

} // namespace

TEST_F(SearchResultsPanelTest, FindAllCommandsAddSetsOfFilesAndHits)
{
    DocumentTab *first = open(u"uno due\n\tdue tre"_s);
    open(u"niente"_s);
    open(u"   due"_s);
    const QString firstName = first->document().displayName();
    QDockWidget *dock = qobject_cast<QDockWidget *>(panel().parentWidget());
    ASSERT_NE(dock, nullptr);
    EXPECT_EQ(dock->windowTitle(), u"Risultati della ricerca"_s);
    EXPECT_TRUE(dock->isHidden());

    search(u"due"_s);
    ASSERT_TRUE(app.commands().dispatch(u"findAllInOpenDocuments:"_s));
    EXPECT_FALSE(dock->isHidden());
    EXPECT_EQ(app.findModel().fields().status, u"3 risultati in 2 file."_s);
    const QString third = app.window().documents()[2]->document().displayName();
    EXPECT_EQ(outline(),
              (QStringList{u"“due” (3 risultati in 2 file) — documenti aperti"_s,
                           u"  "_s + firstName,
                           u"    Riga 1: uno due"_s,
                           u"    Riga 2: due tre"_s,
                           u"  "_s + third,
                           u"    Riga 1: due"_s}));
    const QModelIndex hit = model().index(1, 0, model().index(0, 0, model().index(0, 0)));
    EXPECT_EQ(hit.data(SearchResultsModel::HighlightStartRole).toInt(), 8);
    EXPECT_EQ(hit.data(SearchResultsModel::HighlightLengthRole).toInt(), 3);
    EXPECT_TRUE(panel().view()->isExpanded(hit.parent()));

    // In the current document, within its selection.
    app.window().selectDocument(first);
    first->editor()->setSelection({0, 7});
    search(u"due"_s, {}, true);
    ASSERT_TRUE(app.commands().dispatch(u"findAllInDocument:"_s));
    EXPECT_EQ(rowText(model().index(1, 0)),
              u"“due” (1 risultato in 1 file) — documento corrente"_s);

    const int beeps = beepCount();
    search(QString());
    app.commands().dispatch(u"findAllInDocument:"_s);
    EXPECT_EQ(beepCount(), beeps + 1);
    EXPECT_EQ(app.findModel().fields().status, u"Scrivi cosa cercare."_s);
    EXPECT_TRUE(app.findModel().fields().statusIsError);
    EXPECT_EQ(model().rowCount(), 2);

    panel().clearButton()->click();
    EXPECT_EQ(model().rowCount(), 0);
    panel().closeButton()->click();
    EXPECT_TRUE(dock->isHidden());
    app.commands().dispatch(u"showSearchResults:"_s);
    EXPECT_FALSE(dock->isHidden());
}

TEST_F(SearchResultsPanelTest, StreamedBatchesAreInsertedNeverReset)
{
    SearchResultSink &sink = app.searchResults();
    QSignalSpy resets(&model(), &QAbstractItemModel::modelReset);
    QSignalSpy inserted(&model(), &QAbstractItemModel::rowsInserted);
    const int set = sink.beginSet(u"x"_s, u"/tmp/cartella"_s);
    EXPECT_EQ(rowText(model().index(0, 0)), u"“x” (0 risultati in 0 file) — /tmp/cartella"_s);

    // 100,000 hits in 10 batches of 100 files.
    QElapsedTimer timer;
    timer.start();
    for (int batch = 0; batch < 10; ++batch) {
        std::vector<SearchFileResult> files;
        for (int f = 0; f < 100; ++f) {
            SearchFileResult file{u"f%1.txt"_s.arg(batch * 100 + f), {}, {}, {}};
            for (int h = 0; h < 100; ++h)
                file.hits.push_back({h, u"riga x"_s, {5, 1}});
            files.push_back(std::move(file));
        }
        sink.appendFiles(set, std::move(files));
        QCoreApplication::processEvents();
    }
    std::printf("[ measured ] 100000 hits streamed into the panel in %lld ms\n",
                static_cast<long long>(timer.elapsed()));
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(inserted.count(), 1 + 10); // the set, then one insertion per batch
    EXPECT_EQ(rowText(model().index(0, 0)),
              u"“x” (100000 risultati in 1000 file) — /tmp/cartella"_s);
    EXPECT_EQ(model().rowCount(model().index(0, 0)), 1000);
    EXPECT_EQ(model().hitCount(), 100000);

    panel().clear();
    sink.appendFiles(set, {SearchFileResult{u"tardi"_s, {}, {}, {{0, u"x"_s, {0, 1}}}}});
    EXPECT_EQ(model().rowCount(), 0);
}

TEST_F(SearchResultsPanelTest, OpeningAHitSelectsItsRangeInItsTabOrFile)
{
    DocumentTab *first = open(u"alfa\n  beta alfa"_s);
    DocumentTab *second = open(u"zeta\n\nalfa"_s);
    search(u"alfa"_s);
    app.commands().dispatch(u"findAllInOpenDocuments:"_s);
    app.window().selectDocument(first);

    QTreeView *view = panel().view();
    const QModelIndex secondFile = model().index(1, 0, model().index(0, 0));
    view->setCurrentIndex(model().index(0, 0, secondFile));
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_EQ(app.window().currentDocument(), second);
    EXPECT_EQ(second->editor()->selection(), (TextRange{6, 4}));

    const QModelIndex firstFile = model().index(0, 0, model().index(0, 0));
    const QModelIndex lastHit = model().index(1, 0, firstFile);
    view->scrollTo(lastHit);
    QCoreApplication::processEvents(); // the view lays its rows out
    doubleClick(view->viewport(), view->visualRect(lastHit).center());
    EXPECT_EQ(app.window().currentDocument(), first);
    EXPECT_EQ(first->editor()->selection(), (TextRange{12, 4}));

    // A tab not loaded yet is loaded; a file not open is opened.
    const QUuid id = QUuid::createUuid();
    SessionState::Entry entry;
    entry.id = id.toString(QUuid::WithoutBraces);
    MainWindow &window = app.window();
    auto *pending = new PendingTab(u"attesa"_s, entry, [&](PendingTab *tab) {
        auto *loaded = new DocumentTab(prefs,
                                       "prima\nseconda riga",
                                       std::nullopt,
                                       window.defaultEncoding(),
                                       LineEnding::lf,
                                       u"attesa"_s,
                                       id);
        window.replacePendingTab(tab, loaded);
        return loaded;
    });
    window.addPendingTab(pending);
    const QString path = dir.filePath(u"su disco.txt"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\n\n  trovami qui\n");
    file.close();
    app.searchResults().addSet(
        {u"q"_s,
         u"prova"_s,
         {{u"attesa"_s, {}, id, {{1, u"seconda riga"_s, {8, 4}}}},
          {u"su disco.txt"_s, path, {}, {{2, u"  trovami qui"_s, {2, 7}}}}}});
    const QModelIndex set = model().index(model().rowCount() - 1, 0);
    for (const auto &[row, text, selected] : {std::tuple{0, u"seconda riga\n"_s, TextRange{14, 4}},
                                              std::tuple{1, u"  trovami qui"_s, TextRange{4, 7}}}) {
        view->setCurrentIndex(model().index(0, 0, model().index(row, 0, set)));
        QTest::keyClick(view, Qt::Key_Enter);
        DocumentTab *current = window.currentDocument();
        ASSERT_NE(current, nullptr);
        EXPECT_TRUE(current->editor()->text().contains(text.trimmed()));
        EXPECT_EQ(current->editor()->selection(), selected);
    }
    EXPECT_TRUE(window.findByPath(QFileInfo(path).canonicalFilePath()));
}

TEST_F(SearchResultsPanelTest, NextAndPreviousResultWalkTheHitsAndWrap)
{
    DocumentTab *first = open(u"a b a"_s);
    DocumentTab *second = open(u"b\na"_s);
    search(u"a"_s);
    app.commands().dispatch(u"findAllInOpenDocuments:"_s);
    QTreeView *view = panel().view();

    const struct
    {
        const char *command;
        DocumentTab *tab;
        TextRange selected;
        int hitRow;
    } steps[] = {
        {"nextSearchResult:", first, {0, 1}, 0},
        {"nextSearchResult:", first, {4, 1}, 1},
        {"nextSearchResult:", second, {2, 1}, 0},
        {"nextSearchResult:", first, {0, 1}, 0},      // wraps to the first
        {"previousSearchResult:", second, {2, 1}, 0}, // and back to the last
        {"previousSearchResult:", first, {4, 1}, 1},
    };

    for (const auto &step : steps) {
        ASSERT_TRUE(app.commands().dispatch(QString::fromLatin1(step.command)));
        EXPECT_EQ(app.window().currentDocument(), step.tab) << step.command;
        EXPECT_EQ(step.tab->editor()->selection(), step.selected) << step.command;
        EXPECT_EQ(view->currentIndex().row(), step.hitRow);
        EXPECT_NE(model().hitAt(view->currentIndex()), nullptr);
    }
    const Command *next = app.commands().find(u"nextSearchResult:"_s);
    const Command *previous = app.commands().find(u"previousSearchResult:"_s);
    EXPECT_EQ(next->shortcuts, QList<QKeySequence>{QKeySequence(u"F4"_s)});
    EXPECT_EQ(previous->shortcuts, QList<QKeySequence>{QKeySequence(u"Shift+F4"_s)});

    panel().clear();
    const int beeps = beepCount();
    app.commands().dispatch(u"nextSearchResult:"_s);
    EXPECT_EQ(beepCount(), beeps + 1);
}

TEST_F(SearchResultsPanelTest, ReplacingInOpenDocumentsIsOneStepInEachAndSkipsReadOnlyOnes)
{
    DocumentTab *a = open(u"uno uno"_s);
    DocumentTab *locked = open(u"uno"_s);
    DocumentTab *b = open(u"due uno"_s);
    locked->setReadOnly(true);
    search(u"uno"_s, u"1"_s);
    const int beeps = beepCount();
    ASSERT_TRUE(app.commands().dispatch(u"replaceInOpenDocuments:"_s));
    EXPECT_EQ(beepCount(), beeps);
    EXPECT_EQ(app.findModel().fields().status, u"3 sostituzioni in 2 documenti."_s);
    EXPECT_EQ(a->editor()->text(), u"1 1"_s);
    EXPECT_EQ(b->editor()->text(), u"due 1"_s);
    EXPECT_EQ(locked->editor()->text(), u"uno"_s);
    for (DocumentTab *tab : {a, b})
        EXPECT_EQ(tab->editor()->undoLabel(), u"Sostituisci tutto"_s);
    EXPECT_EQ(undoSteps(a->editor()), 1);
    EXPECT_EQ(a->editor()->text(), u"uno uno"_s);
    EXPECT_EQ(undoSteps(b->editor()), 1);
    EXPECT_EQ(b->editor()->text(), u"due uno"_s);
    EXPECT_EQ(undoSteps(locked->editor()), 0);
}
