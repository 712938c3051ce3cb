#pragma once
// A private InspIRCd (Debian's package inspircd) for the tests of what present-day servers need.
//
//   InspircdServer server;
//   if (!InspircdServer::Available()) GTEST_SKIP() << "inspircd is not installed";
//   ASSERT_TRUE(server.Start()) << server.Log();
//   ... connect to server.Host():server.Port() ...
//
// Start() writes a config with the server's own defaults where it matters (user name checks, 468
// for an invalid one) into a fresh temporary folder, listens on a free port of 127.0.0.1 with host
// name lookups off and DNS pointed at 127.0.0.1, runs "inspircd --nofork" in the foreground and
// returns once it says it is running. The binary is $TALLYBOT_INSPIRCD, else /usr/sbin/inspircd.

#include "tests/support/qt_wait.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

class QProcess;
class QTemporaryDir;

namespace tallybot::testsupport {

class InspircdServer {
public:
    InspircdServer();
    ~InspircdServer();
    InspircdServer(const InspircdServer&) = delete;
    InspircdServer& operator=(const InspircdServer&) = delete;

    static std::string BinaryPath();
    static bool Available();

    bool Start(std::chrono::milliseconds deadline = kDefaultDeadline);
    void Stop();

    std::string Host() const { return "127.0.0.1"; }
    std::uint16_t Port() const { return m_port; }
    std::string ServerName() const { return "irc.test.local"; }
    std::string Log() const;

private:
    bool StartOnce(std::uint16_t port, std::chrono::milliseconds deadline);
    std::string Folder() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_process;
    std::uint16_t m_port = 0;
    mutable std::string m_log;
};

} // namespace tallybot::testsupport
