#pragma once
// A private ngircd for integration and end-to-end tests.
//
//   NgircdServer server;                       // or NgircdServer(options)
//   ASSERT_TRUE(server.Start()) << server.Log();
//   ... connect to server.Host():server.Port() ...
//   server.Stop();                             // also done by the destructor
//
// Start() writes a config into a fresh temporary folder, picks a free port on 127.0.0.1, runs
// "ngircd -n -f <config>" in the foreground and returns once the server's console says it listens and is
// ready (false after the deadline, or when ngircd exits; Log() then says why). The config turns off PAM,
// ident and DNS lookups, allows any number of connections from 127.0.0.1 and keeps the MOTD a one-line
// phrase, so registration ends with 376; an empty motd makes it end with 422 instead. The binary is
// $TALLYBOT_NGIRCD, else /usr/sbin/ngircd, else "ngircd" on the PATH; tests call Available() and skip
// when it is missing. Stop() sends SIGTERM, which makes ngircd close every client connection, so a test
// can also use it to take the server down in the middle of a session.

#include "tests/support/qt_wait.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QProcess;
class QTemporaryDir;

namespace tallybot::testsupport {

class NgircdServer {
public:
    struct Options {
        std::string serverName = "irc.test.local";
        std::string motd = "Tallybot test server"; // empty: no MOTD at all (numeric 422)
        std::vector<std::string> extraLines;       // appended verbatim to the config (own sections allowed)
    };

    NgircdServer();
    explicit NgircdServer(Options options);
    ~NgircdServer();
    NgircdServer(const NgircdServer&) = delete;
    NgircdServer& operator=(const NgircdServer&) = delete;

    static std::string BinaryPath();
    static bool Available();

    bool Start(std::chrono::milliseconds deadline = kDefaultDeadline);
    void Stop(std::chrono::milliseconds deadline = kDefaultDeadline);
    bool Running() const;

    std::string Host() const { return "127.0.0.1"; }
    std::uint16_t Port() const { return m_port; }
    const std::string& ServerName() const { return m_options.serverName; }
    std::string ConfigPath() const;
    // Everything ngircd wrote to its console so far (and the reason a start failed).
    std::string Log() const;

private:
    bool StartOnce(std::uint16_t port, std::chrono::milliseconds deadline);
    std::string ConfigText(std::uint16_t port) const;
    void Drain() const;

    Options m_options;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_process;
    std::uint16_t m_port = 0;
    mutable std::string m_log;
};

// A TCP port on 127.0.0.1 that was free a moment ago (bound and released again).
std::uint16_t FreeLoopbackPort();

} // namespace tallybot::testsupport
