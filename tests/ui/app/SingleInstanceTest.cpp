// The hand-over from a second launch: what it sends arrives, and a handler that opens a modal
// question (its own event loop) while the second launch disconnects does not pull the socket out
// from under the code that read it.
#include "ui/app/SingleInstance.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <malloc.h>
#include <thread>

namespace mirtex {
namespace {

// Points the socket at a private runtime folder, so the test never meets a running editor.
class SingleInstanceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_runtime.isValid());
        m_oldRuntime = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path()));
        // Freed memory is overwritten at once, so a use after free fails here and not by luck.
        mallopt(M_PERTURB, 0xa5);
    }

    void TearDown() override
    {
        mallopt(M_PERTURB, 0);
        qputenv("XDG_RUNTIME_DIR", m_oldRuntime);
    }

    QTemporaryDir m_runtime;
    QByteArray m_oldRuntime;
};

// Runs an event loop (as the program's own) until `done` or the timeout.
void spinUntil(const std::function<bool()> &done, int timeoutMs)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&]() {
        if (done())
            loop.quit();
    });
    poll.start(10);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
}

TEST_F(SingleInstanceTest, SocketLivesInTheRuntimeFolder)
{
    EXPECT_TRUE(SingleInstance::serverName().startsWith(m_runtime.path() + QLatin1Char('/')));
}

TEST_F(SingleInstanceTest, HandOverSurvivesAModalQuestionInTheHandler)
{
    SingleInstance instance;
    ASSERT_TRUE(instance.listen());

    QStringList receivedFiles;
    QStringList receivedUrls;
    std::atomic<bool> clientDone{false};
    QObject::connect(&instance,
                     &SingleInstance::received,
                     &instance,
                     [&](const QStringList &files, const QStringList &urls) {
                         receivedFiles = files;
                         receivedUrls = urls;
                         // The user answers an alert after the second launch has gone.
                         QMessageBox box(QMessageBox::Warning, QStringLiteral("?"), QString());
                         QTimer poll;
                         QObject::connect(&poll, &QTimer::timeout, &box, [&]() {
                             if (clientDone)
                                 QTimer::singleShot(500, &box, &QMessageBox::accept);
                         });
                         poll.start(10);
                         box.exec();
                     });

    bool handedOver = false;
    std::thread secondLaunch([&]() {
        handedOver = SingleInstance::handOver({QStringLiteral("/no/such/file.txt")},
                                              {QStringLiteral("mirtex:?text=Ciao")});
        clientDone = true;
    });
    spinUntil([&]() { return clientDone && !receivedFiles.isEmpty(); }, 10000);
    secondLaunch.join();
    // Whatever the socket's own code does after the handler returns runs now.
    spinUntil([]() { return false; }, 300);

    EXPECT_TRUE(handedOver);
    EXPECT_EQ(receivedFiles, QStringList{QStringLiteral("/no/such/file.txt")});
    EXPECT_EQ(receivedUrls, QStringList{QStringLiteral("mirtex:?text=Ciao")});
}

} // namespace
} // namespace mirtex
