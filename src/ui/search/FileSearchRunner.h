// Find and replace in files, as the find panel starts them: checks the folder and the
// expression, asks before replacing, snapshots the open documents and runs the engine on a
// background thread. Batches stream into the results panel and the progress into the find
// panel's status; the final report sets the status and changes open documents through their
// editors. A newer run makes an older one's reports stale (the generation counter); "Ferma"
// stops a run, keeping what it found. Main thread only.
#pragma once

#include "core/search/FileSearch.h"

#include <QObject>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace mirtex {

class FindModel;
class MainWindow;
class Preferences;
class Questions;
class SearchResultSink;

class FileSearchRunner : public QObject
{
    Q_OBJECT

public:
    // `sink` gives the results panel, or null while there is none.
    using SinkProvider = std::function<SearchResultSink *()>;

    FileSearchRunner(MainWindow &window,
                     FindModel &model,
                     Questions &questions,
                     Preferences &prefs,
                     SinkProvider sink,
                     QObject *parent = nullptr);
    // Stops the run and waits for its thread.
    ~FileSearchRunner() override;

    void findInFiles() { start(false); }

    void replaceInFiles() { start(true); }

    // Stops the run in progress; its report still comes with what was found.
    void stop();

    bool isRunning() const { return m_job != nullptr; }

    // Bumped by every run started; reports of an older one are dropped.
    int generation() const { return m_generation; }

    // The folder typed in the panel, with a leading "~" for the home folder expanded.
    static QString expandedFolder(const QString &typed);

Q_SIGNALS:
    void runningChanged(bool running);
    // A run's report was applied (tests wait for it).
    void finished();

private:
    struct Job;

    void start(bool replace);
    void applyBatch(int generation, FileSearchBatch batch);
    void applyOutcome(int generation, FileSearchOutcome outcome);
    void replaceInOpenDocuments(const std::vector<QUuid> &ids, const SearchOptions &options);

    MainWindow &m_window;
    FindModel &m_model;
    Questions &m_questions;
    Preferences &m_prefs;
    SinkProvider m_sink;
    int m_generation = 0;
    std::shared_ptr<Job> m_job; // the current run
    int m_set = -1;             // its set in the results panel
    QThreadPool m_pool;
};

} // namespace mirtex
