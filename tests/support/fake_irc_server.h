#pragma once
// A scripted IRC server on a raw QTcpServer, for what a real server never sends: lines split across
// arrivals, a registration that ends in 422, ERROR lines, DCC offers, abrupt closes.
//
//   FakeIrcServer fake;
//   ASSERT_TRUE(fake.Listen());                     // 127.0.0.1, a free port: fake.Port()
//   ... let the client connect to fake.Host():fake.Port() ...
//   ASSERT_TRUE(fake.WaitForClient());
//   ASSERT_TRUE(fake.WaitForLine("^NICK "));         // what the client sent, as LineLog::WaitFor
//   fake.Write(":irc.fake 001 nick :Wel");           // raw bytes, flushed at once
//   fake.WriteLine(":irc.fake 376 nick :End");       // CR LF appended
//   fake.CloseClient();
//
// One client at a time: a new connection replaces the previous one (its lines stay in Received()).
// Nothing is answered automatically, not even PING, so a test sees exactly the bytes it wrote.

#include "tests/support/line_log.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class QTcpServer;
class QTcpSocket;

namespace tallybot::testsupport {

class FakeIrcServer {
public:
    FakeIrcServer();
    ~FakeIrcServer();
    FakeIrcServer(const FakeIrcServer&) = delete;
    FakeIrcServer& operator=(const FakeIrcServer&) = delete;

    bool Listen();
    std::string Host() const { return "127.0.0.1"; }
    std::uint16_t Port() const;
    int Connections() const { return m_connections; }

    bool WaitForClient(std::chrono::milliseconds deadline = kDefaultDeadline);
    bool ClientConnected() const;
    // True once the current client's connection is gone (closed by either side).
    bool WaitForClientGone(std::chrono::milliseconds deadline = kDefaultDeadline);

    void Write(std::string_view bytes);
    void WriteLine(std::string_view line);
    void CloseClient();

    std::optional<std::string> WaitForLine(const std::string& pattern,
                                           std::chrono::milliseconds deadline = kDefaultDeadline) {
        return m_received.WaitFor(pattern, deadline);
    }
    LineLog& Received() { return m_received; }

private:
    void OnNewConnection();

    std::unique_ptr<QTcpServer> m_server;
    std::unique_ptr<QTcpSocket> m_client;
    LineLog m_received;
    int m_connections = 0;
};

} // namespace tallybot::testsupport
