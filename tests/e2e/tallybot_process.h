#pragma once
// The real `tallybot` binary as a child process: its standard output and error as line logs, so
// tests wait for pane lines and status lines by pattern.

#include "tests/support/irc_peers.h"
#include "tests/support/qt_wait.h"

#include <cstdlib>
#include <string>

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

namespace tallybot::e2e {

inline QString TallybotBinary() {
    const char* dir = std::getenv("TALLYBOT_BINARY_DIR");
    return QString::fromLocal8Bit(dir ? dir : ".") + "/bin/tallybot";
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

} // namespace tallybot::e2e
