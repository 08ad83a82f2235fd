// Turns the signals that ask the process to end (SIGTERM, SIGHUP, SIGINT) into a Qt signal on the
// main thread, so the session can be written before the program exits.
#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace mirtex {

// Create on the main thread, at most one at a time. While it lives, the three signals no longer
// end the process: each is reported through received() from the event loop instead, and the
// receiver decides how to quit. Destruction restores the previous handlers.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

    // False when the handlers could not be installed (another instance exists, or the system
    // refused); the signals then keep their previous behaviour.
    bool isActive() const { return m_active; }

Q_SIGNALS:
    void received(int signalNumber);

private:
    void drain();

    bool m_active = false;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace mirtex
