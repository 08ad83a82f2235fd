#include "ui/app/SingleInstance.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>

#include <unistd.h>

namespace mirtex {

namespace {
constexpr int kTimeoutMs = 1500;

QJsonArray toArray(const QStringList &list)
{
    QJsonArray array;
    for (const QString &item : list)
        array.append(item);
    return array;
}

QStringList fromArray(const QJsonValue &value)
{
    QStringList list;
    for (const QJsonValue &item : value.toArray())
        list.append(item.toString());
    return list;
}
} // namespace

SingleInstance::SingleInstance(QObject *parent)
    : QObject(parent)
    , m_server(new QLocalServer(this))
{
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, [this]() {
        while (QLocalSocket *socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket]() {
                while (socket->canReadLine()) {
                    const QJsonObject message
                        = QJsonDocument::fromJson(socket->readLine()).object();
                    socket->write("ok\n");
                    socket->flush();
                    // Handled once this handler has returned: what the hand-over does may ask a
                    // question, whose event loop sees the second launch go and deletes the socket.
                    QMetaObject::invokeMethod(
                        this,
                        [this,
                         files = fromArray(message.value(QStringLiteral("files"))),
                         urls = fromArray(message.value(QStringLiteral("urls")))]() {
                            Q_EMIT received(files, urls);
                        },
                        Qt::QueuedConnection);
                }
            });
        }
    });
}

QString SingleInstance::serverName()
{
    // The runtime folder is the user's own (0700); the shared temporary folder is the fallback.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir())
        return runtime + QStringLiteral("/mirtex.socket");
    return QStringLiteral("mirtex-%1").arg(::getuid());
}

bool SingleInstance::handOver(const QStringList &files, const QStringList &urls)
{
    QLocalSocket socket;
    socket.connectToServer(serverName());
    if (!socket.waitForConnected(kTimeoutMs))
        return false;
    QJsonObject message{{QStringLiteral("files"), toArray(files)},
                        {QStringLiteral("urls"), toArray(urls)}};
    socket.write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
    if (!socket.waitForBytesWritten(kTimeoutMs))
        return false;
    // The answer tells that the running instance really took the hand-over.
    return socket.waitForReadyRead(kTimeoutMs) && socket.readLine().startsWith("ok");
}

bool SingleInstance::listen()
{
    if (m_server->listen(serverName()))
        return true;
    // A socket left by a crashed instance: nobody answers it, so take it over.
    QLocalSocket probe;
    probe.connectToServer(serverName());
    if (probe.waitForConnected(300))
        return false;
    QLocalServer::removeServer(serverName());
    return m_server->listen(serverName());
}

} // namespace mirtex
