#pragma once
// The game-server simulator as a child process for integration tests.
//
//   GamesimProcess sim;
//   ASSERT_TRUE(sim.Start("UT", "player Alice red 3 40\n")) << sim.Output();
//   ... query 127.0.0.1:sim.Port() (the query port is sim.Port() + 1) ...
//
// Start() writes the script (engine line first) to a temporary file, picks two free consecutive
// UDP ports on 127.0.0.1, runs $TALLYBOT_BINARY_DIR/bin/tallybot-gamesim (without the variable:
// ../bin beside the test program) and returns once it says it listens (false after the deadline or
// when it exits; Output() says why). A port taken between the pick and the bind is retried with new
// ports. Stop() (also the destructor) ends the process.

#include "tests/support/qt_wait.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

class QProcess;
class QTemporaryDir;

namespace tallybot::testsupport {

class GamesimProcess {
public:
    GamesimProcess();
    ~GamesimProcess();
    GamesimProcess(const GamesimProcess&) = delete;
    GamesimProcess& operator=(const GamesimProcess&) = delete;

    static std::string BinaryPath();

    bool Start(const std::string& engineCode, const std::string& script = {},
               std::chrono::milliseconds deadline = kDefaultDeadline);
    void Stop();

    std::uint16_t Port() const { return m_port; }
    std::string Output() const;

private:
    bool StartOnce(const std::string& scriptPath, std::chrono::milliseconds deadline);

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_process;
    std::uint16_t m_port = 0;
    std::string m_output;
};

} // namespace tallybot::testsupport
