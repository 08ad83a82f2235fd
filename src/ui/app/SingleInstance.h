// One running Mirtex++ per user: a second launch hands its files and mirtex: URLs to the first
// over a local socket and exits; the first opens them and raises its window.
#pragma once

#include <QObject>
#include <QStringList>

class QLocalServer;

namespace mirtex {

class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(QObject *parent = nullptr);

    // The per-user socket: in $XDG_RUNTIME_DIR when there is one.
    static QString serverName();
    // Delivers to a running instance; false when none answered.
    static bool handOver(const QStringList &files, const QStringList &urls);
    // Starts answering later launches; false when the socket could not be taken.
    bool listen();

Q_SIGNALS:
    // Emitted from the event loop, never inside the socket's own handlers.
    void received(const QStringList &files, const QStringList &urls);

private:
    QLocalServer *m_server;
};

} // namespace mirtex
