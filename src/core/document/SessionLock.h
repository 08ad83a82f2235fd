// The one writer of a session folder: a lock file held for the life of the process, so that a
// second instance never loads, rewrites or prunes the session and backups of the first.
#pragma once

#include <QString>

#include <memory>

class QLockFile;

namespace mirtex {

class SessionLock
{
public:
    // Creates the folder (0700) if needed and tries to take "<folder>/session.lock" at once. A
    // lock left by a process that no longer runs is taken over.
    explicit SessionLock(const QString &folder);
    ~SessionLock();

    SessionLock(const SessionLock &) = delete;
    SessionLock &operator=(const SessionLock &) = delete;

    bool isHeld() const;

    // The process holding the lock when this one could not take it; 0 when unknown.
    qint64 holder() const { return m_holder; }

private:
    std::unique_ptr<QLockFile> m_lock;
    qint64 m_holder = 0;
};

} // namespace mirtex
