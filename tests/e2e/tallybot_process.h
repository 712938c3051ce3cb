#pragma once
// The real programs as child processes: `tallybot` with its standard output and error as line
// logs, so tests wait for pane lines and status lines by pattern; tallybot-gamesim playing a match.

#include "tests/support/irc_peers.h"
#include "tests/support/qt_wait.h"
#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <memory>
#include <string>

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <QUdpSocket>

namespace tallybot::e2e {

inline QString TallybotBinary(const char* program = "tallybot") {
    const char* dir = std::getenv("TALLYBOT_BINARY_DIR");
    return QString::fromLocal8Bit(dir ? dir : ".") + "/bin/" + program;
}

class TallybotProcess {
public:
    TallybotProcess() {
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput,
                         [this] { Out.Feed(m_process.readAllStandardOutput().toStdString()); });
        QObject::connect(&m_process, &QProcess::readyReadStandardError,
                         [this] { Err.Feed(m_process.readAllStandardError().toStdString()); });
    }
    ~TallybotProcess() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    bool Start(const QStringList& arguments,
               const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment()) {
        m_process.setProcessEnvironment(env);
        m_process.start(TallybotBinary(), arguments);
        return m_process.waitForStarted(10000);
    }
    // On a pseudo-terminal made by script(1), so that standard output is a terminal.
    bool StartOnTerminal(const QStringList& arguments, const QProcessEnvironment& env) {
        QString command = TallybotBinary();
        for (QString argument : arguments)
            command += " '" + argument.replace("'", "'\\''") + "'";
        m_process.setProcessEnvironment(env);
        m_process.start("script", {"-q", "-e", "-c", command, "/dev/null"});
        return m_process.waitForStarted(10000);
    }
    static bool TerminalAvailable() { return !QStandardPaths::findExecutable("script").isEmpty(); }
    void Terminate() { m_process.terminate(); } // SIGTERM
    bool WaitForExit(std::chrono::milliseconds deadline = testsupport::kDefaultDeadline) {
        return testsupport::WaitUntil([this] { return m_process.state() == QProcess::NotRunning; }, deadline);
    }
    int ExitCode() const { return m_process.exitCode(); }
    QProcess::ExitStatus ExitStatus() const { return m_process.exitStatus(); }
    std::string Transcript() const { return "stdout:\n" + Out.Transcript() + "\nstderr:\n" + Err.Transcript(); }

    testsupport::LineLog Out;
    testsupport::LineLog Err;

private:
    QProcess m_process;
};

// The environment of a machine without a display: no X11, no Wayland, no Qt platform chosen.
inline QProcessEnvironment WithoutDisplay() {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(name);
    return env;
}

// Runs `tallybot ARGS` to its end and returns its exit code (-1 when it did not finish); its
// standard error goes to `error` when given.
inline int RunTallybot(const QStringList& arguments,
                       const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment(),
                       std::string* error = nullptr) {
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(TallybotBinary(), arguments);
    if (!process.waitForFinished(20000)) return -1;
    if (error) *error = process.readAllStandardError().toStdString();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

// The game-server simulator on two free consecutive UDP ports of 127.0.0.1 (game port, query
// port), playing `script` after an "engine CODE" line; Start() returns once it listens, and
// retries with new ports when one was taken between the pick and the bind.
class GamesimProcess {
public:
    ~GamesimProcess() { Stop(); }
    bool Start(const std::string& engineCode, const std::string& script = {}) {
        const QString path = m_dir.filePath("match.txt");
        test::WriteBytes(path.toStdString(), "engine " + engineCode + "\n" + script);
        for (int attempt = 0; attempt < 20; ++attempt) {
            Stop();
            QUdpSocket game, query;
            if (!game.bind(QHostAddress::LocalHost, 0) || game.localPort() == 65535 ||
                !query.bind(QHostAddress::LocalHost, static_cast<quint16>(game.localPort() + 1)))
                continue;
            m_port = game.localPort();
            game.close();
            query.close();
            m_process = std::make_unique<QProcess>();
            m_process->setProcessChannelMode(QProcess::MergedChannels);
            m_process->start(TallybotBinary("tallybot-gamesim"), {"--port", QString::number(m_port), "--script", path});
            testsupport::WaitUntil([&] {
                m_output += m_process->readAll().toStdString();
                return m_output.find("listening on") != std::string::npos || m_process->state() == QProcess::NotRunning;
            });
            if (m_output.find("listening on") != std::string::npos) return true;
        }
        return false;
    }
    void Stop() {
        if (!m_process) return;
        m_process->terminate();
        if (!m_process->waitForFinished(5000)) m_process->kill();
        m_process->waitForFinished(5000);
        m_process.reset();
    }
    std::uint16_t Port() const { return m_port; }
    const std::string& Output() const { return m_output; }

private:
    QTemporaryDir m_dir;
    std::unique_ptr<QProcess> m_process;
    std::uint16_t m_port = 0;
    std::string m_output;
};

} // namespace tallybot::e2e
