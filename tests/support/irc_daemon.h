#pragma once
// A private IRC server for integration and end-to-end tests: ngircd, or InspIRCd (Debian's package,
// which checks user names itself: 468 for an invalid one).
//
//   NgircdServer server;                       // InspircdServer alike; skip when !Available()
//   ASSERT_TRUE(server.Start()) << server.Log();
//   ... connect to server.Host():server.Port() ...
//   server.Stop();                             // also done by the destructor
//
// Start() writes a config into a fresh temporary folder, takes a free port on 127.0.0.1 (again when
// another process took it first), runs the server in the foreground and returns once its console says
// it is ready. No ident or host name lookups, any number of connections from 127.0.0.1, the MOTD a
// one-line phrase (an empty one gives no MOTD at all on ngircd: registration ends with 422). Stop()
// sends SIGTERM, which closes every client connection, so a test can take the server down in the
// middle of a session. The binaries: $TALLYBOT_NGIRCD or /usr/sbin/ngircd, $TALLYBOT_INSPIRCD or
// /usr/sbin/inspircd.

#include "tests/support/qt_wait.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QProcess;
class QTemporaryDir;

namespace tallybot::testsupport {

class IrcDaemon {
public:
    struct Options {
        std::string motd = "Tallybot test server";
        std::vector<std::string> extraLines; // ngircd: appended to the config as they are
    };
    ~IrcDaemon();
    IrcDaemon(const IrcDaemon&) = delete;
    IrcDaemon& operator=(const IrcDaemon&) = delete;

    bool Start(std::chrono::milliseconds deadline = kDefaultDeadline);
    void Stop();
    std::string Host() const { return "127.0.0.1"; }
    std::uint16_t Port() const { return m_port; }
    // Everything the server wrote to its console so far (and why a start failed).
    std::string Log() const;

protected:
    IrcDaemon(bool inspircd, Options options);
    static std::string Binary(bool inspircd);

private:
    bool StartOnce(std::uint16_t port, std::chrono::milliseconds deadline);
    void WriteConfig(std::uint16_t port) const;

    bool m_inspircd;
    Options m_options;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_process;
    std::uint16_t m_port = 0;
    mutable std::string m_log;
};

struct NgircdServer : IrcDaemon {
    explicit NgircdServer(Options options = {}) : IrcDaemon(false, std::move(options)) {}
    static bool Available() { return !Binary(false).empty(); }
};

struct InspircdServer : IrcDaemon {
    InspircdServer() : IrcDaemon(true, {}) {}
    static bool Available() { return !Binary(true).empty(); }
};

// A TCP port on 127.0.0.1 that was free a moment ago (bound and released again).
std::uint16_t FreeLoopbackPort();

} // namespace tallybot::testsupport
