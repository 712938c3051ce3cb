#include "app/qt/remote_server.h"

#include "base/remote_message.h"

#include <unistd.h>

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>

namespace tallybot::app {

namespace {

// sun_path holds 108 bytes with the closing zero; Qt binds first in a temporary folder beside the
// socket, whose name is 9 bytes longer.
constexpr qsizetype kMaxSocketPath = 96;

} // namespace

RemoteServer::RemoteServer(Handler handler, QObject* parent) : QObject(parent), m_handler(std::move(handler)) {
    connect(&m_server, &QLocalServer::newConnection, this, &RemoteServer::OnNewConnection);
}

QString RemoteServer::ChannelName(const QString& homeFolder) {
    // The canonical path keeps "home" and "home/." on one channel.
    const QString canonical =
        QDir(homeFolder).canonicalPath().isEmpty() ? QDir(homeFolder).absolutePath() : QDir(homeFolder).canonicalPath();
    // In the home itself: one channel per home, as private as the home, and outside /tmp so that a
    // service may run with a private /tmp and still be reached by `tallybot --send`.
    const QString inHome = canonical + QStringLiteral("/.tallybot-remote");
    if (inHome.toLocal8Bit().size() < kMaxSocketPath) return inHome;
    // A home too deep for a socket path: the user's runtime folder, else the temporary folder.
    const QByteArray hash = QCryptographicHash::hash(canonical.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
    const QString name = QStringLiteral("tallybot-%1-%2").arg(getuid()).arg(QString::fromLatin1(hash));
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return runtimeFolder.isEmpty() ? name : runtimeFolder + QLatin1Char('/') + name;
}

bool RemoteServer::Listen(const QString& homeFolder) {
    const QString name = ChannelName(homeFolder);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (m_server.listen(name)) return true;
    // A channel nobody answers on is left over from a crashed run: take it over.
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(300)) return false;
    QLocalServer::removeServer(name);
    return m_server.listen(name);
}

void RemoteServer::Close() {
    m_server.close();
    m_handler = nullptr;
}

bool RemoteServer::Send(const QString& homeFolder, const std::string& command, int timeoutMs) {
    QLocalSocket socket;
    socket.connectToServer(ChannelName(homeFolder));
    if (!socket.waitForConnected(timeoutMs)) return false;
    const std::string message = base::EncodeRemoteMessage(command);
    socket.write(message.data(), static_cast<qint64>(message.size()));
    if (!socket.waitForBytesWritten(timeoutMs)) return false;
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState) socket.waitForDisconnected(timeoutMs);
    return true;
}

void RemoteServer::OnNewConnection() {
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        auto buffer = std::make_shared<QByteArray>();
        connect(socket, &QLocalSocket::readyRead, socket, [socket, buffer] {
            // Never hold more than one message's worth from a peer.
            buffer->append(socket->read(1 + base::kRemoteBufferSize -
                                        std::min<qsizetype>(buffer->size(), 1 + base::kRemoteBufferSize)));
        });
        connect(socket, &QLocalSocket::disconnected, this, [this, socket, buffer] {
            buffer->append(socket->readAll().left(1 + base::kRemoteBufferSize -
                                                  std::min<qsizetype>(buffer->size(), 1 + base::kRemoteBufferSize)));
            socket->deleteLater();
            if (auto command = base::DecodeRemoteMessage(std::string_view(buffer->constData(), buffer->size()));
                command && m_handler)
                m_handler(*command);
        });
    }
}

} // namespace tallybot::app
