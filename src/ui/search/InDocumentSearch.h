// Carries out the search commands on the current editor with the find panel's options: selects
// what find next and previous found (opening folds around it), applies replacements through the
// editor's one edit path, sets the marks and bookmarks, and leaves the status in the model.
// Count, mark all and replace all on large texts run on a worker from a snapshot of the text:
// after a moment the model turns busy with a progress line, cancel() stops the work, and a result
// is applied only if the text did not change meanwhile. Main thread only.
#pragma once

#include "core/search/SearchStatus.h"

#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>

class QTimer;

namespace mirtex {

class CommandContext;
class EditorView;
class FindModel;
struct FindResult;

class InDocumentSearch : public QObject
{
    Q_OBJECT

public:
    InDocumentSearch(CommandContext &context, FindModel &model, QObject *parent = nullptr);
    ~InDocumentSearch() override;

    // Texts longer than this (UTF-16 units) are counted, marked and replaced on a worker.
    static constexpr qsizetype kBackgroundAboveUnits = 2'000'000;
    // Quiet time before a background job shows itself as busy.
    static constexpr int kBusyAfterMs = 300;

    void findNext();
    void findPrevious();
    // The selection, or else the word at the caret, becomes the query; then find next.
    void findWordAtCaret();
    void replace();
    void replaceAll();
    void count();
    void markAll();
    void clearMarks();

    // Stops the background job in progress; its result is dropped and the text stays as it was.
    // Returns whether there was one.
    bool cancel();

    bool isRunning() const { return bool(m_job); }

    // Tests lower it to exercise the background path on small texts.
    void setBackgroundThreshold(qsizetype units) { m_backgroundAbove = units; }

Q_SIGNALS:
    // A background job ended: applied, dropped, or cancelled.
    void jobEnded();

private:
    // What a job does with its result on the main thread, given the editor it ran on.
    using Apply = std::function<void(EditorView &editor)>;
    using Work = std::function<Apply(QStringView text)>;

    struct Job;

    EditorView *editor() const;
    void show(EditorView &editor, const FindResult &result);
    // Runs `work` on the text at once, or on a worker for large texts; `progress` is the busy
    // status shown while a worker runs.
    void run(EditorView &editor, const QString &progress, Work work);
    void finish(quint64 generation, const Apply &apply);
    void endJob();

    CommandContext &m_context;
    FindModel &m_model;
    qsizetype m_backgroundAbove = kBackgroundAboveUnits;
    std::unique_ptr<Job> m_job;
    quint64 m_generation = 0;
    QThreadPool m_pool; // one thread: never queued behind other background work
};

} // namespace mirtex
