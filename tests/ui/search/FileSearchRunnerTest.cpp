// Find and replace in files as the find panel runs them, on the real event loop: the checks before
// a run, the statuses, the results streamed into the panel, the question before replacing, open
// documents changed through their editors, and a superseded run's reports dropped.
#include "ui/search/FileSearchRunner.h"

#include "core/app/Preferences.h"
#include "core/search/FindModel.h"
#include "support/QStringPrinter.h"
#include "support/TestFiles.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/search/SearchResultSink.h"
#include "ui/search/SearchResultsModel.h"
#include "ui/search/SearchResultsPanel.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

// Records what the results panel would show.
class FakeSink : public SearchResultSink
{
public:
    void addSet(SearchResultSet set) override { sets.push_back(std::move(set)); }

    int beginSet(const QString &query, const QString &scope) override
    {
        sets.push_back({query, scope, {}});
        return int(sets.size()) - 1;
    }

    void appendFiles(int set, std::vector<SearchFileResult> files) override
    {
        for (SearchFileResult &file : files)
            sets[size_t(set)].files.push_back(std::move(file));
    }

    std::vector<SearchResultSet> sets;
};

class FileSearchRunnerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QDir().mkpath(path(u"work/sub"_s));
        writeFile(path(u"work/a.txt"_s), "needle one\nneedle two\n");
        writeFile(path(u"work/sub/b.txt"_s), "a needle\n");
        writeFile(path(u"work/c.md"_s), "nothing\n");
        QObject::connect(&app.findModel(), &FindModel::changed, [this] {
            const QString status = app.findModel().fields().status;
            if (statuses.isEmpty() || statuses.last() != status)
                statuses << status;
        });
    }

    QTemporaryDir dir;
    QString root = QFileInfo(dir.path()).canonicalFilePath();
    Preferences prefs{dir.filePath(u"settings.conf"_s)};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
    FakeSink sink;
    FileSearchRunner runner{
        app.window(), app.findModel(), questions, prefs, [this] { return &sink; }};
    QStringList statuses;

    QString path(const QString &name) const { return root + u'/' + name; }

    void set(const QString &folder, const QString &query, const QString &replacement = {})
    {
        app.findModel().update([&](FindFields &f) {
            f.directory = folder;
            f.query = query;
            f.replacement = replacement;
        });
    }

    // Waits for the run's report; false when none came.
    bool waitForReport()
    {
        QSignalSpy finished(&runner, &FileSearchRunner::finished);
        return finished.wait(10000);
    }

    SearchStatus status() const
    {
        return {app.findModel().fields().status, app.findModel().fields().statusIsError};
    }
};

} // namespace

TEST_F(FileSearchRunnerTest, StatusesOfARun)
{
    const struct
    {
        QString folder;
        QString query;
        bool runs;
        SearchStatus status;
    } cases[] = {
        {u"missing"_s, u"needle"_s, false, {u"Scegli una cartella esistente."_s, true}},
        {u"work/a.txt"_s, u"needle"_s, false, {u"Scegli una cartella esistente."_s, true}},
        {u"work"_s, u""_s, false, {u"Scrivi cosa cercare."_s, true}},
        {u"work"_s, u"needle"_s, true, {u"3 risultati in 2 file (letti 3)."_s, false}},
        {u"work"_s, u"absent"_s, true, {u"Nessun risultato in 3 file."_s, true}},
    };

    for (const auto &c : cases) {
        set(path(c.folder), c.query);
        runner.findInFiles();
        EXPECT_EQ(runner.isRunning(), c.runs) << c.folder.toStdString();
        if (c.runs) {
            EXPECT_TRUE(app.findModel().fields().isBusy);
            ASSERT_TRUE(waitForReport()) << c.query.toStdString();
        }
        EXPECT_EQ(status(), c.status) << c.query.toStdString();
        EXPECT_FALSE(app.findModel().fields().isBusy);
    }
    EXPECT_EQ(prefs.value(QLatin1String(PreferenceKeys::kFindDirectory)).toString(),
              path(u"work"_s));
    // Each run's set began in the panel and filled in the order searched.
    ASSERT_EQ(sink.sets.size(), 2u);
    EXPECT_EQ(sink.sets[0].query, u"needle"_s);
    EXPECT_EQ(sink.sets[0].scope, path(u"work"_s));
    ASSERT_EQ(sink.sets[0].files.size(), 2u);
    EXPECT_EQ(sink.sets[0].files[0].title, u"a.txt"_s);
    EXPECT_EQ(sink.sets[0].files[1].path, std::optional<QString>(path(u"work/sub/b.txt"_s)));
    EXPECT_TRUE(sink.sets[1].files.empty());
    EXPECT_TRUE(statuses.contains(u"Ricerca in corso…"_s));
    EXPECT_TRUE(statuses.contains(u"Letti 3"_s));
}

TEST_F(FileSearchRunnerTest, ReplaceAsksThenChangesFilesAndOpenDocumentsThroughTheirEditors)
{
    DocumentTab *tab = app.flows().openPath(path(u"work/a.txt"_s));
    ASSERT_NE(tab, nullptr);
    tab->editor()->primaryPane()->SendScintilla(
        QsciScintillaBase::SCI_APPENDTEXT, qulonglong(7), "needle\n");
    set(path(u"work"_s), u"needle"_s, u"pin"_s);

    questions.pushAnswer(u"Annulla"_s);
    runner.replaceInFiles();
    EXPECT_FALSE(runner.isRunning());
    ASSERT_EQ(questions.asked().size(), 1u);
    EXPECT_EQ(questions.asked()[0].message, u"Sostituire “needle” in tutti i file di “work”?"_s);
    EXPECT_EQ(questions.asked()[0].informative,
              u"I file vengono modificati sul disco; i documenti già aperti qui si possono "
              u"annullare con Ctrl+Z."_s);
    EXPECT_EQ(questions.asked()[0].buttons, QStringList({u"Sostituisci"_s, u"Annulla"_s}));
    EXPECT_EQ(readFile(path(u"work/sub/b.txt"_s)), "a needle\n");

    questions.pushAnswer(u"Sostituisci"_s);
    runner.replaceInFiles();
    ASSERT_TRUE(waitForReport());
    EXPECT_EQ(status(), SearchStatus({u"4 sostituzioni in 2 file (letti 3)."_s, false}));
    EXPECT_EQ(readFile(path(u"work/sub/b.txt"_s)), "a pin\n");
    // The open document changed as shown, unsaved text included, as one step; its file did not.
    EXPECT_EQ(tab->editor()->text(), u"pin one\npin two\npin\n"_s);
    EXPECT_EQ(readFile(path(u"work/a.txt"_s)), "needle one\nneedle two\n");
    EXPECT_EQ(tab->editor()->undoLabel(), u"Sostituisci tutto"_s);
    tab->editor()->primaryPane()->undo();
    EXPECT_EQ(tab->editor()->text(), u"needle one\nneedle two\nneedle\n"_s);
    // A replace adds no set to the results panel.
    EXPECT_TRUE(sink.sets.empty());
}

TEST_F(FileSearchRunnerTest, ASupersededRunsReportsAreDropped)
{
    QDir().mkpath(path(u"other"_s));
    writeFile(path(u"other/z.txt"_s), "needle\n");
    set(path(u"work"_s), u"needle"_s);
    runner.findInFiles();
    const int first = runner.generation();
    set(path(u"other"_s), u"needle"_s);
    runner.findInFiles(); // before the first run's reports reach the event loop
    EXPECT_EQ(runner.generation(), first + 1);
    ASSERT_TRUE(waitForReport());
    EXPECT_EQ(status(), SearchStatus({u"1 risultati in 1 file (letti 1)."_s, false}));
    ASSERT_EQ(sink.sets.size(), 2u);
    EXPECT_TRUE(sink.sets[0].files.empty()); // nothing of the stale run arrived
    EXPECT_EQ(sink.sets[1].files.size(), 1u);
    // Its final report never comes either.
    QSignalSpy finished(&runner, &FileSearchRunner::finished);
    EXPECT_FALSE(finished.wait(300));
}

TEST_F(FileSearchRunnerTest, CommandsReachTheRunnerAndTheSidebarFolder)
{
    CommandRegistry &commands = app.commands();
    for (const char *name : {"findInFiles:", "replaceInFiles:", "stopFileSearch:", "findInFolder:"})
        EXPECT_NE(commands.find(QLatin1String(name)), nullptr) << name;
    EXPECT_FALSE(commands.isEnabled(u"stopFileSearch:"_s));
    set(path(u"work"_s), u"needle"_s);
    ASSERT_TRUE(commands.dispatch(u"findInFiles:"_s));
    EXPECT_TRUE(commands.isEnabled(u"stopFileSearch:"_s)); // until the report comes
    ASSERT_TRUE(app.fileSearch().isRunning());
    EXPECT_TRUE(commands.dispatch(u"stopFileSearch:"_s));
    QSignalSpy finished(&app.fileSearch(), &FileSearchRunner::finished);
    ASSERT_TRUE(finished.wait(10000));
    EXPECT_FALSE(commands.isEnabled(u"stopFileSearch:"_s));
    EXPECT_TRUE(commands.dispatch(u"findInFolder:"_s, path(u"work/sub/b.txt"_s)));
    EXPECT_EQ(app.findModel().fields().directory, path(u"work/sub"_s));
    EXPECT_EQ(app.findModel().fields().tab, FindTab::files);
}

TEST_F(FileSearchRunnerTest, TheWindowsRunFillsTheResultsPanel)
{
    set(path(u"work"_s), u"needle"_s);
    QSignalSpy finished(&app.fileSearch(), &FileSearchRunner::finished);
    ASSERT_TRUE(app.commands().dispatch(u"findInFiles:"_s));
    ASSERT_TRUE(finished.wait(10000));
    const QAbstractItemModel &results = app.searchResultsPanel().model();
    ASSERT_EQ(results.rowCount(), 1);
    const QModelIndex set = results.index(0, 0);
    EXPECT_TRUE(
        results.data(set).toString().startsWith(u"\u201Cneedle\u201D (3 risultati in 2 file)"_s))
        << results.data(set).toString().toStdString();
    EXPECT_EQ(results.rowCount(set), 2);
    EXPECT_EQ(status().text, u"3 risultati in 2 file (letti 3)."_s);
}
