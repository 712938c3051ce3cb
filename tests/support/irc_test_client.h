#pragma once
// A tiny raw IRC client for tests: the "other user" in a channel.
//
//   IrcTestClient alice("alice");
//   ASSERT_TRUE(alice.Connect(server.Host(), server.Port()));
//   ASSERT_TRUE(alice.Register());                  // NICK + USER, waits for the end of the MOTD
//   ASSERT_TRUE(alice.Join("#test"));               // waits for the end of the names list
//   alice.Say("#test", "!info");
//   auto line = alice.WaitForLine(R"(^:Tallybot!\S+ PRIVMSG #test :)");
//   ASSERT_TRUE(line) << alice.Transcript();
//
// Lines are bytes without their CR LF; WaitForLine(pattern) waits for the next line matching a regex
// as LineLog::WaitFor does (tests/support/line_log.h). PING is answered by itself. All waits take a
// deadline and never sleep; Connect() gives up early when the connection is refused.

#include "tests/support/line_log.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QTcpSocket;

namespace tallybot::testsupport {

class IrcTestClient {
public:
    explicit IrcTestClient(std::string nick);
    ~IrcTestClient();
    IrcTestClient(const IrcTestClient&) = delete;
    IrcTestClient& operator=(const IrcTestClient&) = delete;

    bool Connect(const std::string& host, std::uint16_t port, std::chrono::milliseconds deadline = kDefaultDeadline);
    // NICK and USER; true once the server ended registration (376 or 422).
    bool Register(std::chrono::milliseconds deadline = kDefaultDeadline);
    // JOIN; true once the names list ended (366). The first to join a channel becomes its operator.
    bool Join(const std::string& channel, std::chrono::milliseconds deadline = kDefaultDeadline);
    void Say(const std::string& target, const std::string& text);
    void Notice(const std::string& target, const std::string& text);
    // Sends one raw line; CR LF is appended.
    void Send(const std::string& line);
    void Quit(const std::string& text = "bye");

    std::optional<std::string> WaitForLine(const std::string& pattern,
                                           std::chrono::milliseconds deadline = kDefaultDeadline) {
        return m_log.WaitFor(pattern, deadline);
    }
    // True once the server closed the connection.
    bool WaitForClose(std::chrono::milliseconds deadline = kDefaultDeadline);

    bool Connected() const;
    const std::string& Nick() const { return m_nick; }
    const std::vector<std::string>& Lines() const { return m_log.Lines(); }
    // All lines received so far, one per line, for failure messages.
    std::string Transcript() const { return m_log.Transcript(); }

private:
    void OnReadyRead();

    std::string m_nick;
    std::unique_ptr<QTcpSocket> m_socket;
    LineLog m_log;
};

} // namespace tallybot::testsupport
