#include "tests/support/inspircd_server.h"

#include "tests/support/ngircd_server.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <QProcess>
#include <QTemporaryDir>

namespace tallybot::testsupport {

InspircdServer::InspircdServer() = default;

InspircdServer::~InspircdServer() {
    Stop();
}

std::string InspircdServer::BinaryPath() {
    if (const char* env = std::getenv("TALLYBOT_INSPIRCD"); env && *env) return env;
    return "/usr/sbin/inspircd";
}

bool InspircdServer::Available() {
    return std::filesystem::exists(BinaryPath());
}

std::string InspircdServer::Folder() const {
    return m_dir ? m_dir->path().toStdString() : std::string();
}

bool InspircdServer::Start(std::chrono::milliseconds deadline) {
    Stop();
    m_log.clear();
    m_dir = std::make_unique<QTemporaryDir>();
    if (!Available() || !m_dir->isValid()) {
        m_log = "inspircd not found or no temporary folder";
        return false;
    }
    // A free port may be taken before the server binds it; a lost race shows as a bind warning.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::uint16_t port = FreeLoopbackPort();
        if (port != 0 && StartOnce(port, deadline)) return true;
    }
    return false;
}

bool InspircdServer::StartOnce(std::uint16_t port, std::chrono::milliseconds deadline) {
    const std::string dir = Folder();
    {
        std::ofstream motd(dir + "/motd.txt", std::ios::trunc);
        motd << "Tallybot test server\n";
        std::ofstream conf(dir + "/inspircd.conf", std::ios::trunc);
        conf << "<config format=\"xml\">\n"
             << "<path configdir=\"" << dir << "\" datadir=\"" << dir << "\" logdir=\"" << dir << "\">\n"
             << "<server name=\"irc.test.local\" description=\"Tallybot test server\" network=\"TallyNet\">\n"
             << "<admin name=\"test\" nick=\"test\" email=\"test@localhost\">\n"
             << "<bind address=\"127.0.0.1\" port=\"" << port << "\" type=\"clients\">\n"
             << "<connect name=\"local\" allow=\"127.0.0.1\" timeout=\"60\" pingfreq=\"120\" localmax=\"1000\" "
                "globalmax=\"1000\" limit=\"1000\" threshold=\"1000\" commandrate=\"100000\" useident=\"no\" "
                "resolvehostnames=\"no\">\n"
             << "<dns server=\"127.0.0.1\" timeout=\"1\">\n"
             << "<files motd=\"" << dir << "/motd.txt\">\n"
             << "<pid file=\"" << dir << "/inspircd.pid\">\n"
             << "<options><security><limits>\n"
             << "<channels users=\"20\" opers=\"60\">\n";
    }
    QStringList arguments{"--nofork", "--config=" + QString::fromStdString(dir + "/inspircd.conf")};
    if (::geteuid() == 0) arguments << "--runasroot"; // containers and CI run the tests as root
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_process->start(QString::fromStdString(BinaryPath()), arguments);
    const bool ready =
        m_process->waitForStarted(static_cast<int>(deadline.count())) &&
        WaitUntil(
            [&] {
                m_log += m_process->readAll().toStdString();
                return m_process->state() != QProcess::Running || m_log.find("is now running as") != std::string::npos;
            },
            deadline);
    if (ready && m_process->state() == QProcess::Running && m_log.find("failed to bind") == std::string::npos) {
        m_port = port;
        return true;
    }
    m_log += "inspircd did not become ready on port " + std::to_string(port) + "\n";
    Stop();
    return false;
}

void InspircdServer::Stop() {
    if (!m_process) return;
    if (m_process->state() != QProcess::NotRunning) {
        m_process->terminate();
        if (!m_process->waitForFinished(5000)) {
            m_process->kill();
            m_process->waitForFinished(5000);
        }
    }
    m_log += m_process->readAll().toStdString();
    m_process.reset();
    m_port = 0;
}

std::string InspircdServer::Log() const {
    if (m_process) m_log += m_process->readAll().toStdString();
    return m_log;
}

} // namespace tallybot::testsupport
