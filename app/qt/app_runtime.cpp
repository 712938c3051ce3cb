#include "app/qt/app_runtime.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QString>

namespace tallybot::app {

namespace {

constexpr int kQuitWaitMs = 2000;

void Apply(QTimer& timer, bool enabled, int intervalMs) {
    if (!enabled) {
        timer.stop();
        return;
    }
    if (timer.interval() != intervalMs) timer.setInterval(intervalMs);
    if (!timer.isActive()) timer.start();
}

} // namespace

AppRuntime::AppRuntime(irc::DccQuestions* questions, irc::DccFileSink* files, QObject* parent)
    : QObject(parent), m_logic(m_sockets.Transport(), m_clock, questions, files),
      m_runner(m_logic.Query(), m_logic.View().Query),
      m_remote([this](const std::string& command) { m_logic.HandleRemote(command); }) {
    m_sockets.Attach(&m_logic.Irc(), [this] { return irc::ExtrasOptionsFrom(m_logic.Settings().Extras); });
    connect(&m_runner, &query::QueryRunner::Changed, this, [this] { m_logic.Sync(); });
    connect(&m_tmrIRCPost, &QTimer::timeout, this, [this] { m_logic.tmrIRCPost_Timer(); });
    connect(&m_tmrIRCSendDelay, &QTimer::timeout, this, [this] { m_logic.tmrIRCSendDelay_Timer(); });
    m_logic.SetViewObserver([this] { emit ViewChanged(); });
    m_logic.SetTimers(this);
}

AppRuntime::~AppRuntime() {
    m_logic.SetTimers(nullptr);
    m_logic.SetViewObserver({});
    m_sockets.Attach(nullptr, {});
}

bool AppRuntime::Start(const StartupOptions& options) {
    m_logic.Main(options);
    return m_remote.Listen(QString::fromLocal8Bit(options.home.c_str()));
}

void AppRuntime::Shutdown() {
    if (m_shutDown) return;
    m_shutDown = true;
    // No remote command may reach a program that is saving its settings (the hook goes first).
    m_remote.Close();
    const bool ircOpen = m_logic.Irc().ConnectStatus() != irc::kNotConnected;
    m_logic.Form_QueryUnload();
    if (!ircOpen) return;
    QElapsedTimer waited;
    waited.start();
    QEventLoop loop;
    QTimer poll;
    poll.setInterval(20);
    connect(&poll, &QTimer::timeout, &loop, [&] {
        if (m_logic.Irc().ConnectStatus() == irc::kNotConnected || waited.elapsed() >= kQuitWaitMs) loop.quit();
    });
    poll.start();
    loop.exec();
}

void AppRuntime::SetTimer(MainTimer timer, bool enabled, int intervalMs) {
    switch (timer) {
    case MainTimer::GamQuery:
        m_runner.Sync(); // the runner owns tmrGamQuery and reads the view itself
        break;
    case MainTimer::IRCPost:
        Apply(m_tmrIRCPost, enabled, intervalMs);
        break;
    case MainTimer::IRCSendDelay:
        Apply(m_tmrIRCSendDelay, enabled, intervalMs);
        break;
    }
}

} // namespace tallybot::app
