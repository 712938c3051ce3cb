#include "tests/support/gamesim_process.h"

#include <cstdlib>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QUdpSocket>

namespace tallybot::testsupport {

namespace {

// Two free consecutive ports: the game port and the query port after it.
std::uint16_t FreePortPair() {
    for (int attempt = 0; attempt < 50; ++attempt) {
        QUdpSocket game;
        QUdpSocket query;
        if (!game.bind(QHostAddress::LocalHost, 0)) continue;
        const quint16 port = game.localPort();
        if (port < 65535 && query.bind(QHostAddress::LocalHost, static_cast<quint16>(port + 1))) return port;
    }
    return 0;
}

} // namespace

GamesimProcess::GamesimProcess() = default;

GamesimProcess::~GamesimProcess() {
    Stop();
}

std::string GamesimProcess::BinaryPath() {
    if (const char* dir = std::getenv("TALLYBOT_BINARY_DIR"); dir && *dir)
        return std::string(dir) + "/bin/tallybot-gamesim";
    // Test programs live in <build>/tests, the simulator in <build>/bin.
    return QCoreApplication::applicationDirPath().toStdString() + "/../bin/tallybot-gamesim";
}

bool GamesimProcess::Start(const std::string& engineCode, const std::string& script,
                           std::chrono::milliseconds deadline) {
    Stop();
    m_dir = std::make_unique<QTemporaryDir>();
    const QString path = m_dir->filePath("match.txt");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        m_output = "cannot write " + path.toStdString();
        return false;
    }
    file.write(QByteArray::fromStdString("engine " + engineCode + "\n" + script));
    file.close();
    for (int attempt = 0; attempt < 3; ++attempt)
        if (StartOnce(path.toStdString(), deadline)) return true;
    return false;
}

bool GamesimProcess::StartOnce(const std::string& scriptPath, std::chrono::milliseconds deadline) {
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_port = FreePortPair();
    m_output.clear();
    m_process->start(QString::fromStdString(BinaryPath()),
                     {"--port", QString::number(m_port), "--script", QString::fromStdString(scriptPath)});
    const bool ready = WaitUntil(
        [&] {
            m_output += m_process->readAll().toStdString();
            return m_output.find("listening on") != std::string::npos || m_process->state() == QProcess::NotRunning;
        },
        deadline);
    if (ready && m_output.find("listening on") != std::string::npos) return true;
    m_output += m_process->errorString().toStdString();
    Stop();
    return false;
}

void GamesimProcess::Stop() {
    if (!m_process) return;
    if (m_process->state() != QProcess::NotRunning) {
        m_process->terminate();
        if (!m_process->waitForFinished(5000)) {
            m_process->kill();
            m_process->waitForFinished(5000);
        }
    }
    m_output += m_process->readAll().toStdString();
    m_process.reset();
}

std::string GamesimProcess::Output() const {
    return m_output;
}

} // namespace tallybot::testsupport
