// QLockFile with the stale time off: a lock is stale only when the process that wrote it is gone,
// never because the first window has simply been open for a long time.
#include "core/document/SessionLock.h"

#include "core/document/SessionFolder.h"

#include <QDir>
#include <QLockFile>

namespace mirtex {

SessionLock::SessionLock(const QString &folder)
    : m_lock(std::make_unique<QLockFile>(QDir(folder).filePath(QStringLiteral("session.lock"))))
{
    SessionFolder::makePrivate(folder);
    m_lock->setStaleLockTime(0);
    if (m_lock->tryLock(0)) {
        SessionFolder::makePrivateFile(m_lock->fileName());
        return;
    }
    QString host;
    QString application;
    if (!m_lock->getLockInfo(&m_holder, &host, &application))
        m_holder = 0;
}

SessionLock::~SessionLock() = default;

bool SessionLock::isHeld() const
{
    return m_lock->isLocked();
}

} // namespace mirtex
