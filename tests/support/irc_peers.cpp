#include "tests/support/irc_peers.h"

#include <algorithm>

#include <QHostAddress>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>

namespace tallybot::testsupport {
namespace {

// Lines are bytes; Latin-1 maps each byte to one character, so control characters match as \x01 etc.
bool Matches(const QRegularExpression& re, const std::string& line) {
    return re.match(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size()))).hasMatch();
}

std::string_view Bytes(const QByteArray& data) {
    return {data.constData(), static_cast<std::size_t>(data.size())};
}

} // namespace

std::vector<std::string> LineLog::Feed(std::string_view bytes) {
    std::vector<std::string> added;
    m_carry.append(bytes);
    for (std::size_t end; (end = m_carry.find('\n')) != std::string::npos;) {
        std::string line = m_carry.substr(0, end);
        m_carry.erase(0, end + 1);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        added.push_back(line);
        m_lines.push_back(std::move(line));
    }
    return added;
}

std::optional<std::string> LineLog::WaitFor(const std::string& pattern, std::chrono::milliseconds deadline) {
    const QRegularExpression re(QString::fromStdString(pattern));
    std::optional<std::string> found;
    WaitUntil(
        [&] {
            for (; !found && m_consumed < m_lines.size(); ++m_consumed)
                if (Matches(re, m_lines[m_consumed])) found = m_lines[m_consumed];
            return found.has_value();
        },
        deadline);
    return found;
}

bool LineLog::Pending(const std::string& pattern) const {
    const QRegularExpression re(QString::fromStdString(pattern));
    return std::any_of(m_lines.begin() + static_cast<std::ptrdiff_t>(m_consumed), m_lines.end(),
                       [&](const std::string& line) { return Matches(re, line); });
}

std::string LineLog::Transcript() const {
    std::string text;
    for (const std::string& line : m_lines)
        text += line + "\n";
    return text;
}

std::string RegexQuote(std::string_view text) {
    std::string quoted;
    for (char c : text) {
        if (std::string_view(R"(\^$.|?*+()[]{})").find(c) != std::string_view::npos) quoted += '\\';
        quoted += c;
    }
    return quoted;
}

FakeIrcServer::FakeIrcServer() : m_server(std::make_unique<QTcpServer>()) {
    QObject::connect(m_server.get(), &QTcpServer::newConnection, m_server.get(), [this] {
        while (QTcpSocket* next = m_server->nextPendingConnection()) {
            if (m_client) m_client->abort();
            next->setParent(nullptr); // owned here, so a replaced client dies with its unique_ptr
            m_client.reset(next);
            ++m_connections;
            QObject::connect(next, &QTcpSocket::readyRead, next,
                             [this, next] { m_received.Feed(Bytes(next->readAll())); });
        }
    });
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

bool FakeIrcServer::WaitForClient(std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return m_client && m_client->state() == QAbstractSocket::ConnectedState; }, deadline);
}

void FakeIrcServer::Write(std::string_view bytes) {
    if (!m_client) return;
    m_client->write(bytes.data(), static_cast<qint64>(bytes.size()));
    m_client->flush();
}

void FakeIrcServer::CloseClient() {
    if (m_client) m_client->disconnectFromHost();
}

IrcTestClient::IrcTestClient(std::string nick) : m_nick(std::move(nick)), m_socket(std::make_unique<QTcpSocket>()) {
    QObject::connect(m_socket.get(), &QTcpSocket::readyRead, m_socket.get(), [this] {
        for (const std::string& line : m_log.Feed(Bytes(m_socket->readAll())))
            if (line.rfind("PING", 0) == 0) Send("PONG" + line.substr(4));
    });
}

IrcTestClient::~IrcTestClient() {
    m_socket->abort();
}

bool IrcTestClient::Connect(const std::string& host, std::uint16_t port, std::chrono::milliseconds deadline) {
    m_socket->connectToHost(QString::fromStdString(host), port);
    WaitUntil(
        [&] {
            return m_socket->state() == QAbstractSocket::ConnectedState ||
                   m_socket->state() == QAbstractSocket::UnconnectedState;
        },
        deadline);
    return m_socket->state() == QAbstractSocket::ConnectedState;
}

bool IrcTestClient::Register(std::chrono::milliseconds deadline) {
    Send("NICK " + m_nick);
    Send("USER " + m_nick + " 0 * :Test user " + m_nick);
    return WaitForLine(R"(^:\S+ (376|422) )", deadline).has_value();
}

bool IrcTestClient::Join(const std::string& channel, std::chrono::milliseconds deadline) {
    Send("JOIN " + channel);
    return WaitForLine(R"(^:\S+ 366 \S+ )" + RegexQuote(channel) + " ", deadline).has_value();
}

void IrcTestClient::Send(const std::string& line) {
    const std::string wire = line + "\r\n";
    m_socket->write(wire.data(), static_cast<qint64>(wire.size()));
    m_socket->flush();
}

bool IrcTestClient::WaitForClose(std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return m_socket->state() == QAbstractSocket::UnconnectedState; }, deadline);
}

DccTestSender::DccTestSender(std::string content)
    : m_content(std::move(content)), m_server(std::make_unique<QTcpServer>()) {
    QObject::connect(m_server.get(), &QTcpServer::newConnection, m_server.get(), [this] {
        QTcpSocket* next = m_server->nextPendingConnection();
        if (!next) return;
        ++m_connections;
        if (m_peer) { // one transfer per sender
            next->abort();
            return;
        }
        next->setParent(nullptr);
        m_peer.reset(next);
        QObject::connect(next, &QTcpSocket::readyRead, next, [this] {
            m_ackBytes.append(Bytes(m_peer->readAll()));
            for (; m_ackBytes.size() >= 4; m_ackBytes.erase(0, 4)) {
                m_lastAck = 0;
                for (int i = 0; i < 4; ++i)
                    m_lastAck = m_lastAck << 8 | static_cast<unsigned char>(m_ackBytes[static_cast<std::size_t>(i)]);
            }
            if (m_lastAck >= m_content.size()) m_peer->disconnectFromHost();
        });
        const std::uint64_t start = std::min<std::uint64_t>(m_start, m_content.size());
        next->write(m_content.data() + start, static_cast<qint64>(m_content.size() - start));
    });
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
    return "\x01" + ("DCC SEND " + fileName + " 2130706433 " + std::to_string(Port()) + " ") +
           std::to_string(m_content.size()) + "\x01";
}

std::string DccTestSender::AcceptLine(const std::string& fileName, std::uint64_t position) const {
    return "\x01" + ("DCC ACCEPT " + fileName + " " + std::to_string(Port()) + " ") + std::to_string(position) + "\x01";
}

bool DccTestSender::WaitForConnection(std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return m_connections > 0; }, deadline);
}

bool DccTestSender::WaitForAck(std::uint64_t value, std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return m_lastAck >= value; }, deadline);
}

} // namespace tallybot::testsupport
