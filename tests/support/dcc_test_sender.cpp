#include "tests/support/dcc_test_sender.h"

#include <algorithm>

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

namespace tallybot::testsupport {

DccTestSender::DccTestSender(std::string content)
    : m_content(std::move(content)), m_server(std::make_unique<QTcpServer>()) {
    QObject::connect(m_server.get(), &QTcpServer::newConnection, m_server.get(), [this] { OnNewConnection(); });
}

DccTestSender::~DccTestSender() {
    if (m_peer) m_peer->abort();
}

bool DccTestSender::Listen() {
    return m_server->listen(QHostAddress::LocalHost, 0);
}

std::uint16_t DccTestSender::Port() const {
    return m_server->serverPort();
}

std::string DccTestSender::Offer(const std::string& fileName) const {
    return "\x01"
           "DCC SEND " +
           fileName + " " + std::to_string(kLoopbackLong) + " " + std::to_string(Port()) + " " +
           std::to_string(m_content.size()) + "\x01";
}

std::string DccTestSender::AcceptLine(const std::string& fileName, std::uint64_t position) const {
    return "\x01"
           "DCC ACCEPT " +
           fileName + " " + std::to_string(Port()) + " " + std::to_string(position) + "\x01";
}

void DccTestSender::OnNewConnection() {
    QTcpSocket* next = m_server->nextPendingConnection();
    if (!next) return;
    ++m_connections;
    if (m_peer) { // one transfer per sender
        next->abort();
        return;
    }
    next->setParent(nullptr);
    m_peer.reset(next);
    QObject::connect(next, &QTcpSocket::readyRead, next, [this] { OnReadyRead(); });
    const std::uint64_t start = std::min<std::uint64_t>(m_start, m_content.size());
    next->write(m_content.data() + start, static_cast<qint64>(m_content.size() - start));
}

void DccTestSender::OnReadyRead() {
    const QByteArray data = m_peer->readAll();
    m_ackBytes.append(data.constData(), static_cast<std::size_t>(data.size()));
    while (m_ackBytes.size() >= 4) {
        const auto byte = [&](std::size_t i) {
            return static_cast<std::uint32_t>(static_cast<unsigned char>(m_ackBytes[i]));
        };
        m_lastAck = (byte(0) << 24) | (byte(1) << 16) | (byte(2) << 8) | byte(3);
        m_ackBytes.erase(0, 4);
    }
    if (m_lastAck >= m_content.size()) m_peer->disconnectFromHost();
}

void DccTestSender::Disconnect() {
    if (m_peer) m_peer->disconnectFromHost();
}

bool DccTestSender::WaitForConnection(std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return m_connections > 0; }, deadline);
}

bool DccTestSender::WaitForAck(std::uint64_t value, std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return m_lastAck >= value; }, deadline);
}

} // namespace tallybot::testsupport
