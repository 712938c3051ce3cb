#include "tests/support/fake_irc_server.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

namespace tallybot::testsupport {

FakeIrcServer::FakeIrcServer() : m_server(std::make_unique<QTcpServer>()) {
    QObject::connect(m_server.get(), &QTcpServer::newConnection, m_server.get(), [this] { OnNewConnection(); });
}

FakeIrcServer::~FakeIrcServer() {
    if (m_client) m_client->abort();
}

bool FakeIrcServer::Listen() {
    return m_server->listen(QHostAddress::LocalHost, 0);
}

std::uint16_t FakeIrcServer::Port() const {
    return m_server->serverPort();
}

void FakeIrcServer::OnNewConnection() {
    while (QTcpSocket* next = m_server->nextPendingConnection()) {
        if (m_client) m_client->abort();
        // Owned here rather than by the server, so a replaced client dies with its unique_ptr.
        next->setParent(nullptr);
        m_client.reset(next);
        ++m_connections;
        QObject::connect(next, &QTcpSocket::readyRead, next, [this, next] {
            const QByteArray data = next->readAll();
            m_received.Feed(std::string_view(data.constData(), static_cast<std::size_t>(data.size())));
        });
    }
}

bool FakeIrcServer::WaitForClient(std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return ClientConnected(); }, deadline);
}

bool FakeIrcServer::ClientConnected() const {
    return m_client && m_client->state() == QAbstractSocket::ConnectedState;
}

bool FakeIrcServer::WaitForClientGone(std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return !ClientConnected(); }, deadline);
}

void FakeIrcServer::Write(std::string_view bytes) {
    if (!m_client) return;
    m_client->write(bytes.data(), static_cast<qint64>(bytes.size()));
    m_client->flush();
}

void FakeIrcServer::WriteLine(std::string_view line) {
    std::string wire(line);
    wire += "\r\n";
    Write(wire);
}

void FakeIrcServer::CloseClient() {
    if (m_client) m_client->disconnectFromHost();
}

} // namespace tallybot::testsupport
