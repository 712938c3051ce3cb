#include "tests/support/irc_test_client.h"

#include <QTcpSocket>

namespace tallybot::testsupport {

IrcTestClient::IrcTestClient(std::string nick) : m_nick(std::move(nick)), m_socket(std::make_unique<QTcpSocket>()) {
    QObject::connect(m_socket.get(), &QTcpSocket::readyRead, m_socket.get(), [this] { OnReadyRead(); });
}

IrcTestClient::~IrcTestClient() {
    m_socket->abort();
}

bool IrcTestClient::Connect(const std::string& host, std::uint16_t port, std::chrono::milliseconds deadline) {
    m_socket->connectToHost(QString::fromStdString(host), port);
    WaitUntil(
        [&] {
            const auto state = m_socket->state();
            return state == QAbstractSocket::ConnectedState || state == QAbstractSocket::UnconnectedState;
        },
        deadline);
    return Connected();
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

void IrcTestClient::Say(const std::string& target, const std::string& text) {
    Send("PRIVMSG " + target + " :" + text);
}

void IrcTestClient::Notice(const std::string& target, const std::string& text) {
    Send("NOTICE " + target + " :" + text);
}

void IrcTestClient::Send(const std::string& line) {
    const std::string wire = line + "\r\n";
    m_socket->write(wire.data(), static_cast<qint64>(wire.size()));
    m_socket->flush();
}

void IrcTestClient::Quit(const std::string& text) {
    Send("QUIT :" + text);
    WaitForClose();
}

bool IrcTestClient::WaitForClose(std::chrono::milliseconds deadline) {
    return WaitUntil([&] { return m_socket->state() == QAbstractSocket::UnconnectedState; }, deadline);
}

bool IrcTestClient::Connected() const {
    return m_socket->state() == QAbstractSocket::ConnectedState;
}

void IrcTestClient::OnReadyRead() {
    const QByteArray data = m_socket->readAll();
    for (const std::string& line :
         m_log.Feed(std::string_view(data.constData(), static_cast<std::size_t>(data.size()))))
        if (line.rfind("PING", 0) == 0) Send("PONG" + line.substr(4));
}

} // namespace tallybot::testsupport
