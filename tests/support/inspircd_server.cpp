#include "tests/support/inspircd_server.h"

#include "tests/support/ngircd_server.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <QProcess>
#include <QTemporaryDir>

namespace tallybot::testsupport {

namespace {

std::string BinaryPath() {
    const char* env = std::getenv("TALLYBOT_INSPIRCD");
    return env && *env ? env : "/usr/sbin/inspircd";
}

} // namespace

InspircdServer::InspircdServer() = default;

InspircdServer::~InspircdServer() {
    Stop();
}

bool InspircdServer::Available() {
    return std::filesystem::exists(BinaryPath());
}

bool InspircdServer::Start(std::chrono::milliseconds deadline) {
    Stop();
    m_dir = std::make_unique<QTemporaryDir>();
    // A free port may be taken before the server binds it; a lost race shows as a bind warning.
    for (int attempt = 0; attempt < 3 && m_dir->isValid(); ++attempt)
        if (StartOnce(FreeLoopbackPort(), deadline)) return true;
    return false;
}

bool InspircdServer::StartOnce(std::uint16_t port, std::chrono::milliseconds deadline) {
    const std::string dir = m_dir->path().toStdString();
    std::ofstream(dir + "/motd.txt") << "Tallybot test server\n";
    std::ofstream(dir + "/inspircd.conf")
        << "<config format=\"xml\">\n<path configdir=\"" << dir << "\" datadir=\"" << dir << "\" logdir=\"" << dir
        << "\">\n<server name=\"irc.test.local\" description=\"Tallybot test server\" network=\"TallyNet\">\n"
        << "<admin name=\"test\" nick=\"test\" email=\"test@localhost\">\n"
        << "<bind address=\"127.0.0.1\" port=\"" << port << "\" type=\"clients\">\n"
        << "<connect allow=\"127.0.0.1\" timeout=\"60\" localmax=\"1000\" globalmax=\"1000\" threshold=\"1000\" "
           "commandrate=\"100000\" useident=\"no\" resolvehostnames=\"no\">\n"
        << "<dns server=\"127.0.0.1\" timeout=\"1\">\n<files motd=\"" << dir << "/motd.txt\">\n"
        << "<pid file=\"" << dir << "/inspircd.pid\">\n";
    QStringList arguments{"--nofork", QString::fromStdString("--config=" + dir + "/inspircd.conf")};
    if (::geteuid() == 0) arguments << "--runasroot"; // containers and CI run the tests as root
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_process->start(QString::fromStdString(BinaryPath()), arguments);
    WaitUntil(
        [&] {
            m_log += m_process->readAll().toStdString();
            return m_process->state() == QProcess::NotRunning || m_log.find("is now running as") != std::string::npos;
        },
        deadline);
    if (m_process->state() == QProcess::Running && m_log.find("failed to bind") == std::string::npos) {
        m_port = port;
        return true;
    }
    Stop();
    return false;
}

void InspircdServer::Stop() {
    if (!m_process) return;
    m_process->terminate();
    if (!m_process->waitForFinished(5000)) m_process->kill();
    m_process->waitForFinished(5000);
    m_log += m_process->readAll().toStdString();
    m_process.reset();
    m_port = 0;
}

std::string InspircdServer::Log() const {
    if (m_process) m_log += m_process->readAll().toStdString();
    return m_log;
}

} // namespace tallybot::testsupport
