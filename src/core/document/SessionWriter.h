// Runs the session store's writes on one background thread, one at a time, so that writing the
// backup of a large document never holds up typing. Quit and signals write in the foreground.
#pragma once

#include "core/document/SessionStore.h"

#include <QFutureWatcher>
#include <QObject>
#include <QThreadPool>

#include <optional>

namespace mirtex {

// One write of the whole session: the documents (each dirty one with its text already copied,
// so the write needs nothing from the editors) and the window's state.
struct SessionWriteRequest
{
    QList<SessionDocument> documents;
    qsizetype selected = 0;
    QStringList workspace;
    bool sidebarVisible = false;
    QList<SessionState::Entry> carried;
};

// Created, used and destroyed on the main thread. The store is used only by this writer's
// thread from the first write on (and by the caller again once no write is in progress).
class SessionWriter : public QObject
{
    Q_OBJECT

public:
    explicit SessionWriter(SessionStore &store, QObject *parent = nullptr);
    // Waits for the write in progress: its files are complete or untouched, never half-written.
    ~SessionWriter() override;

    // Starts the write in the background; false (nothing started) while one is in progress, so
    // at most one copy of each text is held. `written` reports the result.
    bool writeInBackground(SessionWriteRequest request);
    // Waits for the write in progress (reporting it through `written` first), then writes on
    // the calling thread and returns the result (also reported through `written`).
    SessionWriteResult writeNow(const SessionWriteRequest &request);

    bool isWriting() const { return m_pending.has_value(); }

    // Waits for the write in progress and reports it; does nothing when none is.
    void finishPending();

Q_SIGNALS:
    // Main thread, once per write, in the order the writes ran.
    void written(const mirtex::SessionWriteResult &result);

private:
    SessionWriteResult run(const SessionWriteRequest &request);

    SessionStore &m_store;
    QThreadPool m_pool;
    QFutureWatcher<SessionWriteResult> m_watcher;
    std::optional<QFuture<SessionWriteResult>> m_pending;
};

} // namespace mirtex
