#pragma once
// The program's objects on Qt: MainLogic with the real IRC sockets and clock, the UDP query
// runner, the two posting timers and the remote-control channel. The window (or the headless
// runner) sits on top and observes MainLogic's view through ViewChanged.

#include "app/logic/main_logic.h"
#include "app/qt/remote_server.h"
#include "irc/qt/irc_session_sockets.h"
#include "irc/qt/qt_irc_clock.h"
#include "query/qt/query_runner.h"

#include <QObject>
#include <QTimer>

namespace tallybot::app {

class AppRuntime final : public QObject, public MainTimers {
    Q_OBJECT
public:
    // questions and files may be null (headless): every DCC offer is declined.
    explicit AppRuntime(irc::DccQuestions* questions = nullptr, irc::DccFileSink* files = nullptr,
                        QObject* parent = nullptr);
    ~AppRuntime() override;

    // MainLogic::Main, then the remote-control channel of the home folder. False when another
    // instance already listens there (this one runs on, unreachable).
    bool Start(const StartupOptions& options);
    // The normal shutdown; then waits (bounded) until the IRC server has closed our connection,
    // so that the QUIT line really leaves.
    void Shutdown();

    MainLogic& Logic() { return m_logic; }
    query::QueryRunner& Runner() { return m_runner; }

    void SetTimer(MainTimer timer, bool enabled, int intervalMs) override;

signals:
    void ViewChanged();

private:
    irc::QtIrcClock m_clock;
    irc::IrcSessionSockets m_sockets{m_clock}; // the IRC sockets behind the Extras session
    MainLogic m_logic;
    query::QueryRunner m_runner;
    QTimer m_tmrIRCPost;
    QTimer m_tmrIRCSendDelay;
    RemoteServer m_remote;
    bool m_shutDown = false;
};

} // namespace tallybot::app
