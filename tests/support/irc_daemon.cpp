#include "tests/support/irc_daemon.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

namespace tallybot::testsupport {

std::uint16_t FreeLoopbackPort() {
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost, 0)) return 0;
    return probe.serverPort();
}

IrcDaemon::IrcDaemon(bool inspircd, Options options) : m_inspircd(inspircd), m_options(std::move(options)) {}

IrcDaemon::~IrcDaemon() {
    Stop();
}

std::string IrcDaemon::Binary(bool inspircd) {
    const char* env = std::getenv(inspircd ? "TALLYBOT_INSPIRCD" : "TALLYBOT_NGIRCD");
    const std::string path = env && *env ? env : inspircd ? "/usr/sbin/inspircd" : "/usr/sbin/ngircd";
    return std::filesystem::exists(path) ? path : std::string();
}

bool IrcDaemon::Start(std::chrono::milliseconds deadline) {
    Stop();
    m_log.clear();
    m_dir = std::make_unique<QTemporaryDir>();
    // The port is free only until someone else takes it; a lost race shows as a failed start.
    for (int attempt = 0; attempt < 3 && m_dir->isValid() && !Binary(m_inspircd).empty(); ++attempt)
        if (StartOnce(FreeLoopbackPort(), deadline)) return true;
    return false;
}

void IrcDaemon::WriteConfig(std::uint16_t port) const {
    const std::string dir = m_dir->path().toStdString();
    if (m_inspircd) {
        std::ofstream(dir + "/motd.txt") << m_options.motd << "\n";
        std::ofstream(dir + "/inspircd.conf")
            << "<config format=\"xml\">\n<path configdir=\"" << dir << "\" datadir=\"" << dir << "\" logdir=\"" << dir
            << "\">\n<server name=\"irc.test.local\" description=\"Tallybot test server\" network=\"TallyNet\">\n"
            << "<admin name=\"test\" nick=\"test\" email=\"test@localhost\">\n"
            << "<bind address=\"127.0.0.1\" port=\"" << port << "\" type=\"clients\">\n"
            << "<connect allow=\"127.0.0.1\" timeout=\"60\" localmax=\"1000\" globalmax=\"1000\" threshold=\"1000\" "
               "commandrate=\"100000\" useident=\"no\" resolvehostnames=\"no\">\n"
            << "<dns server=\"127.0.0.1\" timeout=\"1\">\n<files motd=\"" << dir << "/motd.txt\">\n"
            << "<pid file=\"" << dir << "/inspircd.pid\">\n";
        return;
    }
    std::ofstream conf(dir + "/ngircd.conf");
    conf << "[Global]\nName = irc.test.local\nInfo = Tallybot test server\n"
         << "AdminInfo1 = test\nAdminInfo2 = test\nAdminEMail = test@localhost\n"
         << "Listen = 127.0.0.1\nPorts = " << port << "\n"
         << (m_options.motd.empty() ? "MotdFile = " + dir + "/missing.motd" : "MotdPhrase = " + m_options.motd)
         << "\n[Limits]\nMaxConnectionsIP = 0\nPingTimeout = 300\nPongTimeout = 60\n"
         << "[Options]\nPAM = no\nIdent = no\nDNS = no\n";
    for (const std::string& line : m_options.extraLines)
        conf << line << "\n";
}

bool IrcDaemon::StartOnce(std::uint16_t port, std::chrono::milliseconds deadline) {
    WriteConfig(port);
    const QString dir = m_dir->path();
    QStringList arguments{"-n", "-f", dir + "/ngircd.conf"};
    if (m_inspircd) arguments = {"--nofork", "--config=" + dir + "/inspircd.conf"};
    if (m_inspircd && ::geteuid() == 0) arguments << "--runasroot"; // containers and CI run the tests as root
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_process->start(QString::fromStdString(Binary(m_inspircd)), arguments);
    const std::string ready = m_inspircd ? "is now running as" : "Now listening on [127.0.0.1]:" + std::to_string(port);
    WaitUntil(
        [&] {
            Log();
            return m_process->state() == QProcess::NotRunning ||
                   (m_log.find(ready) != std::string::npos &&
                    (m_inspircd || m_log.find(" ready.") != std::string::npos));
        },
        deadline);
    if (m_process->state() == QProcess::Running && m_log.find(ready) != std::string::npos &&
        m_log.find("failed to bind") == std::string::npos) {
        m_port = port;
        return true;
    }
    m_log += "the server did not become ready on port " + std::to_string(port) + "\n";
    Stop();
    return false;
}

void IrcDaemon::Stop() {
    if (!m_process) return;
    m_process->terminate();
    if (!WaitUntil([&] { return m_process->state() == QProcess::NotRunning; })) {
        m_process->kill();
        m_process->waitForFinished(5000);
    }
    Log();
    m_process.reset();
    m_port = 0;
}

std::string IrcDaemon::Log() const {
    if (m_process) m_log += m_process->readAll().toStdString();
    return m_log;
}

} // namespace tallybot::testsupport
