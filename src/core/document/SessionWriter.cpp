// The background session write. The store replaces every file atomically, so a write that is
// still running when the process is killed leaves the previous files whole; the requests carry
// copies of the texts, so an edit or a closed tab during the write changes nothing in it.
#include "core/document/SessionWriter.h"

#include <QtConcurrent>

namespace mirtex {

SessionWriter::SessionWriter(SessionStore &store, QObject *parent)
    : QObject(parent)
    , m_store(store)
{
    m_pool.setMaxThreadCount(1);
    m_pool.setObjectName(QStringLiteral("mirtex.session"));
    connect(&m_watcher, &QFutureWatcherBase::finished, this, [this]() {
        // Already reported when a foreground write waited for it.
        if (m_pending && m_pending->isFinished())
            finishPending();
    });
}

SessionWriter::~SessionWriter()
{
    m_watcher.disconnect(this);
    if (m_pending)
        m_pending->waitForFinished();
}

SessionWriteResult SessionWriter::run(const SessionWriteRequest &request)
{
    return m_store.write(request.documents,
                         request.selected,
                         request.workspace,
                         request.sidebarVisible,
                         request.carried);
}

bool SessionWriter::writeInBackground(SessionWriteRequest request)
{
    if (m_pending)
        return false;
    m_pending = QtConcurrent::run(&m_pool,
                                  [this, request = std::move(request)]() { return run(request); });
    m_watcher.setFuture(*m_pending);
    return true;
}

void SessionWriter::finishPending()
{
    if (!m_pending)
        return;
    QFuture<SessionWriteResult> future = *m_pending;
    m_pending.reset();
    future.waitForFinished();
    Q_EMIT written(future.result());
}

SessionWriteResult SessionWriter::writeNow(const SessionWriteRequest &request)
{
    finishPending();
    SessionWriteResult result = run(request);
    Q_EMIT written(result);
    return result;
}

} // namespace mirtex
