#pragma once
// A private InspIRCd (Debian's package inspircd) with the server's own user name checks (468 for an
// invalid one), for the tests of what present-day servers need. Like NgircdServer: Start() writes a
// config into a temporary folder, listens on a free port of 127.0.0.1 (no host name lookups, DNS
// only at 127.0.0.1), runs "inspircd --nofork" and returns once it says it is running.

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

    static bool Available(); // /usr/sbin/inspircd, or $TALLYBOT_INSPIRCD
    bool Start(std::chrono::milliseconds deadline = kDefaultDeadline);
    void Stop();

    std::string Host() const { return "127.0.0.1"; }
    std::uint16_t Port() const { return m_port; }
    std::string Log() const;

private:
    bool StartOnce(std::uint16_t port, std::chrono::milliseconds deadline);

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_process;
    std::uint16_t m_port = 0;
    mutable std::string m_log;
};

} // namespace tallybot::testsupport
