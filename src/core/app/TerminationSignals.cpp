// A socket pair carries the signal number from the handler, where almost nothing is allowed, to
// the event loop: write(2) is async-signal-safe, and the notifier wakes the main thread.
#include "core/app/TerminationSignals.h"

#include <QList>
#include <QPointer>
#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace mirtex {

namespace {

constexpr std::array kSignals{SIGTERM, SIGHUP, SIGINT};

// The end the handler writes to; -1 when no instance is active.
std::atomic<int> writeEnd{-1};
int readEnd = -1;
std::array<struct sigaction, kSignals.size()> previousActions{};

extern "C" void onTerminationSignal(int signalNumber)
{
    const int savedErrno = errno;
    const int fd = writeEnd.load(std::memory_order_relaxed);
    if (fd >= 0) {
        const unsigned char byte = static_cast<unsigned char>(signalNumber);
        // A full pipe means earlier signals are still waiting: dropping this one loses nothing.
        [[maybe_unused]] const ssize_t written = ::write(fd, &byte, 1);
    }
    errno = savedErrno;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
{
    if (writeEnd.load() >= 0)
        return;
    int fds[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, fds) != 0)
        return;
    readEnd = fds[0];
    writeEnd.store(fds[1]);

    struct sigaction action
    {};

    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &action, &previousActions[i]);

    m_notifier = std::make_unique<QSocketNotifier>(readEnd, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::drain);
    m_active = true;
}

TerminationSignals::~TerminationSignals()
{
    if (!m_active)
        return;
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &previousActions[i], nullptr);
    m_notifier.reset();
    const int fd = writeEnd.exchange(-1);
    ::close(fd);
    ::close(readEnd);
    readEnd = -1;
}

void TerminationSignals::drain()
{
    // Everything is read before anything is announced: a receiver may delete this object.
    QList<int> numbers;
    unsigned char bytes[16];
    for (;;) {
        const ssize_t count = ::read(readEnd, bytes, sizeof bytes);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        for (ssize_t i = 0; i < count; ++i)
            numbers.append(int(bytes[i]));
    }
    const QPointer<TerminationSignals> self(this);
    for (int number : numbers) {
        if (!self)
            return;
        Q_EMIT received(number);
    }
}

} // namespace mirtex
