// One writer per session folder: a second holder is refused while the first lives, and the lock
// of a process that died is taken over.
#include "core/document/SessionLock.h"

#include <QDir>
#include <QLockFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

using namespace mirtex;

TEST(SessionLockTest, OneHolderAtATimeAndDeadHoldersLocksAreTakenOver)
{
    QTemporaryDir home;
    const QString folder = home.filePath(QStringLiteral("state/Mirtex"));
    {
        SessionLock first(folder);
        EXPECT_TRUE(first.isHeld());
        SessionLock second(folder);
        EXPECT_FALSE(second.isHeld());
        EXPECT_EQ(second.holder(), qint64(::getpid()));
    }
    EXPECT_TRUE(SessionLock(folder).isHeld()) << "released when the holder goes";

    // A process that took the lock and died without releasing it.
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        QLockFile lock(QDir(folder).filePath(QStringLiteral("session.lock")));
        ::_exit(lock.tryLock(0) ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_EQ(WEXITSTATUS(status), 0);
    ASSERT_TRUE(QFile::exists(QDir(folder).filePath(QStringLiteral("session.lock"))));
    EXPECT_TRUE(SessionLock(folder).isHeld());
}
