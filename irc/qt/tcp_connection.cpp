#include "irc/qt/tcp_connection.h"

#include "irc/irc_transport.h"
#include "irc/qt/socket_errors.h"
#include "irc/qt/tls_setup.h"

#include <QSignalBlocker>
#include <QSslSocket>
#include <QTimer>

namespace tallybot::irc {

TcpConnection::TcpConnection(Handlers handlers) : m_handlers(std::move(handlers)) {}

TcpConnection::~TcpConnection() {
    if (!m_socket) return;
    QObject::disconnect(m_socket, nullptr, nullptr, nullptr);
    m_socket->abort();
    delete m_socket;
}

void TcpConnection::PrepareSocket(bool tls) {
    if (m_socket && (qobject_cast<QSslSocket*>(m_socket) != nullptr) == tls) return;
    if (m_socket) {
        // We may be inside one of the old socket's own signals: let the event loop delete it.
        QObject::disconnect(m_socket, nullptr, nullptr, nullptr);
        m_socket->abort();
        m_socket->deleteLater();
    }
    m_socket = tls ? new QSslSocket : new QTcpSocket;
    QTcpSocket* socket = m_socket;
    QObject::connect(socket, &QTcpSocket::connected, socket, [this] {
        if (!m_tls.Enabled && m_handlers.connected) m_handlers.connected();
    });
    if (auto* ssl = qobject_cast<QSslSocket*>(socket)) {
        // Over TLS the connection counts as open once the handshake is done.
        QObject::connect(ssl, &QSslSocket::encrypted, ssl, [this] {
            if (m_handlers.connected) m_handlers.connected();
        });
        QObject::connect(ssl, &QSslSocket::sslErrors, ssl, [this, ssl](const QList<QSslError>& errors) {
            if (AcceptTlsErrors(*ssl, errors, m_tls)) ssl->ignoreSslErrors();
        });
    }
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this] { DeliverPending(); });
    QObject::connect(socket, &QTcpSocket::disconnected, socket, [this] { OnDisconnected(); });
    QObject::connect(socket, &QTcpSocket::errorOccurred, socket,
                     [this](QAbstractSocket::SocketError error) { OnError(error); });
}

void TcpConnection::Connect(const std::string& host, int port) {
    Close();
    PrepareSocket(m_tls.Enabled);
    m_remoteHost = host;
    if (port <= 0 || port > 65535) {
        // Reported later, like every other connect failure, so the caller finishes its own steps first.
        QTimer::singleShot(0, m_socket, [this, port] { ReportError(10049, "Invalid port " + std::to_string(port)); });
        m_inError = true;
        return;
    }
    const QString name = QString::fromLatin1(host.data(), static_cast<qsizetype>(host.size()));
    if (m_tls.Enabled) {
        auto* ssl = static_cast<QSslSocket*>(m_socket);
        const std::string problem = ConfigureTls(*ssl, m_tls);
        if (!problem.empty()) {
            QTimer::singleShot(0, m_socket, [this, problem] { ReportError(10054, problem); });
            m_inError = true;
            return;
        }
        ssl->connectToHostEncrypted(name, static_cast<quint16>(port));
        return;
    }
    m_socket->connectToHost(name, static_cast<quint16>(port));
}

void TcpConnection::Send(std::string_view bytes) {
    if (!m_socket || m_socket->state() == QAbstractSocket::UnconnectedState) return;
    m_socket->write(bytes.data(), static_cast<qint64>(bytes.size()));
}

void TcpConnection::Close() {
    m_inError = false;
    if (!m_socket) return;
    // Our own close is not news to the core: no disconnected() or error reaches it.
    const QSignalBlocker blocker(m_socket);
    // What was sent just before (the last DCC acknowledgement, a QUIT) still goes out, as far as the
    // system takes it without waiting.
    if (m_socket->state() == QAbstractSocket::ConnectedState) m_socket->flush();
    m_socket->abort();
}

int TcpConnection::State() const {
    // After a failure the socket reads as "error" until the next connect or close, whatever Qt's state.
    if (m_inError) return kSockError;
    if (!m_socket) return kSockClosed;
    switch (m_socket->state()) {
    case QAbstractSocket::HostLookupState:
        return kSockResolvingHost;
    case QAbstractSocket::ConnectingState:
        return kSockConnecting;
    case QAbstractSocket::ConnectedState:
        return kSockConnected;
    case QAbstractSocket::BoundState:
        return kSockOpen;
    case QAbstractSocket::ClosingState:
        return kSockClosing;
    case QAbstractSocket::ListeningState:
        return kSockListening;
    default:
        return kSockClosed;
    }
}

void TcpConnection::DeliverPending() {
    // The handler may close the socket; then nothing is left to read and the loop ends.
    while (m_socket && m_socket->bytesAvailable() > 0) {
        const QByteArray chunk = m_socket->read(kMaxChunk);
        if (chunk.isEmpty()) break;
        if (m_handlers.data)
            m_handlers.data(std::string_view(chunk.constData(), static_cast<std::size_t>(chunk.size())));
    }
}

void TcpConnection::OnDisconnected() {
    DeliverPending();
    if (m_handlers.closed) m_handlers.closed();
}

void TcpConnection::OnError(QAbstractSocket::SocketError error) {
    // A close by the peer is an ordinary end of the connection, reported through disconnected().
    if (error == QAbstractSocket::RemoteHostClosedError) return;
    m_inError = true;
    ReportError(WinsockErrorNumber(error), m_socket->errorString().toLatin1().toStdString());
}

void TcpConnection::ReportError(int number, const std::string& description) {
    if (m_handlers.error) m_handlers.error(number, description);
}

} // namespace tallybot::irc
