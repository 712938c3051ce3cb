#include "irc/qt/ident_listener.h"

#include "irc/irc_transport.h"
#include "irc/qt/socket_errors.h"

namespace tallybot::irc {

IdentListener::IdentListener(Handlers handlers) : m_handlers(std::move(handlers)) {
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { OnNewConnection(); });
}

IdentListener::~IdentListener() {
    DropPending();
}

void IdentListener::Listen(int port) {
    m_inError = false;
    if (m_server.isListening()) return;
    if (port < 0 || port > 65535) {
        m_inError = true;
        if (m_handlers.error) m_handlers.error(10049, "Invalid port " + std::to_string(port));
        return;
    }
    if (!m_server.listen(QHostAddress::Any, static_cast<quint16>(port))) {
        m_inError = true;
        if (m_handlers.error)
            m_handlers.error(WinsockErrorNumber(m_server.serverError()),
                             m_server.errorString().toLatin1().toStdString());
    }
}

int IdentListener::State() const {
    if (m_server.isListening()) return kSockListening;
    return m_inError ? kSockError : kSockClosed;
}

void IdentListener::OnNewConnection() {
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        const long id = static_cast<long>(socket->socketDescriptor());
        m_pending[id] = socket;
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            const QByteArray bytes = socket->readAll();
            if (m_handlers.data)
                m_handlers.data(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        });
        QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, id, socket] {
            m_pending.erase(id);
            socket->deleteLater();
        });
        if (m_handlers.request) m_handlers.request(id, m_server.serverPort());
    }
}

void IdentListener::Answer(long requestId, std::string_view line) {
    m_server.close();
    const auto it = m_pending.find(requestId);
    QPointer<QTcpSocket> socket = it != m_pending.end() ? it->second : nullptr;
    if (it != m_pending.end()) m_pending.erase(it);
    DropPending();
    if (!socket) return;
    // One reply per request: it closes itself once the line is out, and frees itself after that.
    QObject::disconnect(socket, &QTcpSocket::readyRead, nullptr, nullptr);
    QObject::disconnect(socket, &QTcpSocket::disconnected, nullptr, nullptr);
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    socket->write(line.data(), static_cast<qint64>(line.size()));
    socket->disconnectFromHost();
}

void IdentListener::Close() {
    m_server.close();
    m_inError = false;
    DropPending();
}

void IdentListener::DropPending() {
    auto pending = std::move(m_pending);
    m_pending.clear();
    for (auto& [id, socket] : pending) {
        if (!socket) continue;
        QObject::disconnect(socket, nullptr, nullptr, nullptr);
        socket->abort();
        socket->deleteLater();
    }
}

} // namespace tallybot::irc
