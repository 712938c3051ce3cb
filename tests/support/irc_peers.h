#pragma once
// The other ends of the program's sockets, for tests: a scripted IRC server, a raw IRC client (the
// "other user" in a channel), the sending side of a DCC SEND, and the line log they read with.
//
//   FakeIrcServer fake;  ASSERT_TRUE(fake.Listen());    // 127.0.0.1, a free port: fake.Port()
//   ASSERT_TRUE(fake.WaitForClient());
//   ASSERT_TRUE(fake.WaitForLine("^NICK "));             // what the client sent, as LineLog::WaitFor
//   fake.Write(":irc.fake 001 nick :Wel");               // raw bytes; WriteLine appends CR LF
//
//   IrcTestClient alice("alice");
//   ASSERT_TRUE(alice.Connect(host, port) && alice.Register() && alice.Join("#test"));
//   alice.Say("#test", "!info");
//   ASSERT_TRUE(alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #test :)")) << alice.Transcript();
//
// All waits take a deadline and never sleep.

#include "tests/support/qt_wait.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QTcpServer;
class QTcpSocket;

namespace tallybot::testsupport {

// Bytes in, lines out: Feed() splits at LF and drops one CR before it, keeping the unterminated tail
// for the next Feed(). WaitFor(pattern) runs the Qt event loop until a line not yet consumed matches
// the regex (QRegularExpression over the bytes read as Latin-1), consumes the lines up to and including
// it and returns it, or nothing after the deadline; every line stays in Lines() and Transcript().
class LineLog {
public:
    std::vector<std::string> Feed(std::string_view bytes); // the complete lines this call added
    std::optional<std::string> WaitFor(const std::string& pattern,
                                       std::chrono::milliseconds deadline = kDefaultDeadline);
    bool Pending(const std::string& pattern) const; // a line not yet consumed matches; consumes nothing
    const std::vector<std::string>& Lines() const { return m_lines; }
    std::string Transcript() const;

private:
    std::string m_carry;
    std::vector<std::string> m_lines;
    std::size_t m_consumed = 0;
};

// The text quoted so that a regex matches it literally ("#chan.x" -> "#chan\.x").
std::string RegexQuote(std::string_view text);

// One client at a time (a new connection replaces the previous one; its lines stay in Received()).
// Nothing is answered, not even PING, so a test sees exactly the bytes it wrote.
class FakeIrcServer {
public:
    FakeIrcServer();
    ~FakeIrcServer();
    bool Listen();
    std::string Host() const { return "127.0.0.1"; }
    std::uint16_t Port() const;
    int Connections() const { return m_connections; }
    bool WaitForClient(std::chrono::milliseconds deadline = kDefaultDeadline);
    void Write(std::string_view bytes);
    void WriteLine(std::string_view line) { Write(std::string(line) + "\r\n"); }
    void CloseClient();
    std::optional<std::string> WaitForLine(const std::string& pattern,
                                           std::chrono::milliseconds deadline = kDefaultDeadline) {
        return m_received.WaitFor(pattern, deadline);
    }
    LineLog& Received() { return m_received; }

private:
    std::unique_ptr<QTcpServer> m_server;
    std::unique_ptr<QTcpSocket> m_client;
    LineLog m_received;
    int m_connections = 0;
};

// Answers PING by itself; Connect() gives up early when the connection is refused.
class IrcTestClient {
public:
    explicit IrcTestClient(std::string nick);
    ~IrcTestClient();
    bool Connect(const std::string& host, std::uint16_t port, std::chrono::milliseconds deadline = kDefaultDeadline);
    // NICK and USER; true once registration ended (376 or 422).
    bool Register(std::chrono::milliseconds deadline = kDefaultDeadline);
    // JOIN; true once the names list ended (366). The first to join a channel is its operator.
    bool Join(const std::string& channel, std::chrono::milliseconds deadline = kDefaultDeadline);
    void Say(const std::string& target, const std::string& text) { Send("PRIVMSG " + target + " :" + text); }
    void Notice(const std::string& target, const std::string& text) { Send("NOTICE " + target + " :" + text); }
    void Send(const std::string& line); // CR LF appended
    std::optional<std::string> WaitForLine(const std::string& pattern,
                                           std::chrono::milliseconds deadline = kDefaultDeadline) {
        return m_log.WaitFor(pattern, deadline);
    }
    bool WaitForClose(std::chrono::milliseconds deadline = kDefaultDeadline); // closed by the server
    const std::vector<std::string>& Lines() const { return m_log.Lines(); }
    std::string Transcript() const { return m_log.Transcript(); }

private:
    std::string m_nick;
    std::unique_ptr<QTcpSocket> m_socket;
    LineLog m_log;
};

// Offer() is the CTCP text "\1DCC SEND <name> <address> <port> <size>\1" with 127.0.0.1 as a 32-bit
// number. On the first connection the sender writes the content from the start position (0, or an
// accepted resume's: SetStartPosition) and reads the receiver's 4-byte big-endian acknowledgements;
// it closes once every byte is acknowledged. AcceptLine() answers a receiver's "DCC RESUME".
class DccTestSender {
public:
    explicit DccTestSender(std::string content);
    ~DccTestSender();
    bool Listen();
    std::uint16_t Port() const;
    std::string Offer(const std::string& fileName) const;
    std::string AcceptLine(const std::string& fileName, std::uint64_t position) const;
    void SetStartPosition(std::uint64_t position) { m_start = position; }
    bool WaitForConnection(std::chrono::milliseconds deadline = kDefaultDeadline);
    bool WaitForAck(std::uint64_t value, std::chrono::milliseconds deadline = kDefaultDeadline);
    int Connections() const { return m_connections; }

private:
    std::string m_content;
    std::uint64_t m_start = 0;
    std::unique_ptr<QTcpServer> m_server;
    std::unique_ptr<QTcpSocket> m_peer;
    std::string m_ackBytes;
    std::uint64_t m_lastAck = 0;
    int m_connections = 0;
};

} // namespace tallybot::testsupport
