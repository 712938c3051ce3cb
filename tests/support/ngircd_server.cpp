#include "tests/support/ngircd_server.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <QHostAddress>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>

namespace tallybot::testsupport {

std::uint16_t FreeLoopbackPort() {
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost, 0)) return 0;
    return probe.serverPort();
}

NgircdServer::NgircdServer() : NgircdServer(Options{}) {}

NgircdServer::NgircdServer(Options options) : m_options(std::move(options)) {}

NgircdServer::~NgircdServer() {
    Stop();
}

std::string NgircdServer::BinaryPath() {
    if (const char* env = std::getenv("TALLYBOT_NGIRCD"); env && *env) return env;
    if (std::filesystem::exists("/usr/sbin/ngircd")) return "/usr/sbin/ngircd";
    return QStandardPaths::findExecutable("ngircd").toStdString();
}

bool NgircdServer::Available() {
    const std::string path = BinaryPath();
    return !path.empty() && std::filesystem::exists(path);
}

std::string NgircdServer::ConfigText(std::uint16_t port) const {
    std::string text;
    text += "[Global]\n";
    text += "Name = " + m_options.serverName + "\n";
    text += "Info = Tallybot test server\n";
    text += "AdminInfo1 = test\nAdminInfo2 = test\nAdminEMail = test@localhost\n";
    text += "Listen = 127.0.0.1\n";
    text += "Ports = " + std::to_string(port) + "\n";
    if (m_options.motd.empty())
        text += "MotdFile = " + (std::filesystem::path(m_dir->path().toStdString()) / "missing.motd").string() + "\n";
    else
        text += "MotdPhrase = " + m_options.motd + "\n";
    text += "[Limits]\n";
    text += "MaxConnectionsIP = 0\nPingTimeout = 300\nPongTimeout = 60\n";
    text += "[Options]\n";
    text += "PAM = no\nIdent = no\nDNS = no\n";
    for (const std::string& line : m_options.extraLines)
        text += line + "\n";
    return text;
}

std::string NgircdServer::ConfigPath() const {
    return m_dir ? (std::filesystem::path(m_dir->path().toStdString()) / "ngircd.conf").string() : std::string();
}

bool NgircdServer::Start(std::chrono::milliseconds deadline) {
    Stop();
    m_log.clear();
    if (!Available()) {
        m_log = "ngircd not found";
        return false;
    }
    m_dir = std::make_unique<QTemporaryDir>();
    if (!m_dir->isValid()) {
        m_log = "cannot create a temporary folder";
        return false;
    }
    // The port is free only until someone else takes it; a lost race shows as ngircd exiting, so retry.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::uint16_t port = FreeLoopbackPort();
        if (port != 0 && StartOnce(port, deadline)) return true;
    }
    return false;
}

bool NgircdServer::StartOnce(std::uint16_t port, std::chrono::milliseconds deadline) {
    {
        std::ofstream conf(ConfigPath(), std::ios::trunc);
        conf << ConfigText(port);
    }
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_process->start(QString::fromStdString(BinaryPath()), {"-n", "-f", QString::fromStdString(ConfigPath())});
    if (!m_process->waitForStarted(static_cast<int>(deadline.count()))) {
        m_log += "ngircd did not start: " + m_process->errorString().toStdString() + "\n";
        m_process.reset();
        return false;
    }
    const std::string listening = "Now listening on [127.0.0.1]:" + std::to_string(port);
    const bool ready = WaitUntil(
        [&] {
            Drain();
            return m_process->state() != QProcess::Running ||
                   (m_log.find(listening) != std::string::npos && m_log.find(" ready.") != std::string::npos);
        },
        deadline);
    if (ready && m_process->state() == QProcess::Running) {
        m_port = port;
        return true;
    }
    m_log += "ngircd did not become ready on port " + std::to_string(port) + "\n";
    Stop();
    return false;
}

void NgircdServer::Drain() const {
    if (m_process) m_log += m_process->readAll().toStdString();
}

void NgircdServer::Stop(std::chrono::milliseconds deadline) {
    if (!m_process) return;
    if (m_process->state() != QProcess::NotRunning) {
        m_process->terminate();
        if (!WaitUntil([&] { return m_process->state() == QProcess::NotRunning; }, deadline)) {
            m_process->kill();
            m_process->waitForFinished(static_cast<int>(deadline.count()));
        }
    }
    Drain();
    m_process.reset();
    m_port = 0;
}

bool NgircdServer::Running() const {
    return m_process && m_process->state() == QProcess::Running;
}

std::string NgircdServer::Log() const {
    Drain();
    return m_log;
}

} // namespace tallybot::testsupport
