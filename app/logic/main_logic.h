#pragma once
// The main window without widgets: it owns the settings record, the game state, match reporting,
// the IRC control's core and the query cycle, implements their host and sink interfaces, and keeps
// what the window shows in MainView. The window and the headless runner drive it through its
// handler methods (named after the controls they belong to) and mirror View().

#include "app/app_settings.h"
#include "app/logic/main_timers.h"
#include "app/logic/main_view.h"
#include "base/app_log.h"
#include "irc/usc_irc.h"
#include "query/game_state.h"
#include "query/query_cycle.h"
#include "reporting/reporting.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tallybot::app {

// What start-up needs from the platform; everything here is passed in, nothing is looked up.
struct StartupOptions {
    std::string home;                     // the program folder (Tallybot.ini, Profiles/, Tallybot.log)
    base::OperatorShell* shell = nullptr; // message boxes; may be null in tests
    base::clsAppLog::Clock clock;         // time of log entries; null: the system clock
    base::SystemFacts facts;              // for the error report
    std::string commandLine;              // the program's own command line (positional words)
};

inline constexpr const char* kAppTitle = "Tallybot";

// Tooltip of the tray icon for a ConnState value.
std::string TrayTooltip(int connState);

class MainLogic final : public query::QueryHost, public reporting::ChannelSink, public reporting::PaneSink {
public:
    // questions and files may be null: every DCC offer is then declined.
    MainLogic(irc::IrcTransport& transport, const irc::IrcClock& clock, irc::DccQuestions* questions = nullptr,
              irc::DccFileSink* files = nullptr);
    ~MainLogic() override;
    MainLogic(const MainLogic&) = delete;
    MainLogic& operator=(const MainLogic&) = delete;

    void SetTimers(MainTimers* timers) { m_timers = timers; }
    // Runs after every handler that may have changed the view (the window repaints from View()).
    void SetViewObserver(std::function<void()> observer) { m_viewObserver = std::move(observer); }

    // Start-up: home folder, log, profiles, settings, then Form_Load.
    void Main(const StartupOptions& options);
    void Form_Load();
    // Shutdown in the order the window has always used; ends with a fresh log file.
    void Form_QueryUnload();

    // Buttons.
    void cmdIRCConnection_Click();
    void cmdGamQuery_Click();
    // Text of an IRC history box changed (typed, or set by remote control).
    void SetIrcText(HistoryCombo MainView::*combo, const std::string& text);
    void cmbGamServer_Change(const std::string& text);
    // A history box was left or chosen from: its text moves to the top of its list.
    void cmbIRC_Commit(HistoryCombo MainView::*combo);
    void cmbGamServer_Commit();
    void UpdateConnectButton();

    // Remote control ("ConIRC", "DisIRC", "ConGam", "DisGam").
    void HandleRemote(const std::string& command);

    // Menus.
    void RefreshProfileMenu();
    void mnuProfileSel_Click(int index);
    void mnuPostServer_Click();
    void mnuPostServerShort_Click();
    void mnuPostPlayers_Click();
    void mnuPostPlayersShort_Click();
    void mnuPostTeams_Click();
    void mnuPostTeamsShort_Click();
    void mnuPostAbout_Click();
    void mnuPostHelp_Click();
    void mnuPostCustomMess_Click();
    void ApplyDisplayOptions();

    // Timers.
    void tmrGamQuery_Timer();
    void tmrIRCPost_Timer();
    void tmrIRCSendDelay_Timer();

    // IRC control events.
    void ircMain_StatusChange();
    void ircMain_Disconnected();

    // After an event that reached the query cycle or the IRC core from outside (socket, runner):
    // timers follow the view and the window is told.
    void Sync();

    // The quit text sent when the operator disconnects.
    std::string QuitMessage() const;

    MainView& View() { return m_view; }
    const MainView& View() const { return m_view; }
    AppSettings& Settings() { return m_settings; }
    query::GameState& Game() { return m_game; }
    reporting::ReportingState& ReportState() { return m_reportState; }
    irc::uscIRC& Irc() { return m_irc; }
    query::QueryCycle& Query() { return m_query; }
    base::clsAppLog* Log() { return m_log.get(); }
    const std::string& CommandLine() const { return m_commandLine; }

    // query::QueryHost
    void ParseReply(int engineId, std::string_view reply) override;
    void ResetTeamScores() override;
    void HandleQ3Info(std::string_view reply) override;
    void RefreshDisplay() override;
    void CalcCappedPlayer(int scorePerCap, int matchOver) override;
    void SelectProfile() override;
    void RefreshControls() override;
    void ShowMessage(const std::string& text) override;
    void Log(const std::string& module, const std::string& procedure, long errorNumber, const std::string& message,
             bool showMessage) override;
    void Notice(const std::string& procedure, const std::string& text) override;

    // reporting::ChannelSink, reporting::PaneSink
    void SendToChannel(const std::string& text) override;
    void NotifyUser(const std::string& nick, const std::string& text) override;
    std::string Nick() const override;
    void AddText(const std::string& text, int colour) override;

private:
    void LoadHistoryCombos();
    void SaveHistoryCombos();
    void ConnectIrc();
    void DisconnectIrc();
    void UpdatePostControls();
    void RestoreConnectButton();
    void SyncTimer(MainTimer timer, bool enabled, int intervalMs);
    // Runs body under the window's error trap, then Sync().
    void Handler(const char* procedure, const std::function<void()>& body);
    // One procedure of start-up or shutdown under its own trap, named by its module and itself.
    void Step(const char* module, const char* procedure, const std::function<void()>& body);
    void StoreWindowPlacement();

    AppSettings m_settings;
    query::GameState m_game;
    reporting::ReportingState m_reportState;
    MainView m_view;
    reporting::ReportContext m_ctx;
    reporting::Reporting m_reporting;
    irc::uscIRC m_irc;
    query::QueryCycle m_query;
    std::unique_ptr<base::clsAppLog> m_log;
    base::OperatorShell* m_shell = nullptr;
    MainTimers* m_timers = nullptr;
    std::function<void()> m_viewObserver;
    std::string m_commandLine;

    // The reply being handled settled the engine: nothing is posted for it.
    bool m_awaitingDetection = true;
    std::int32_t m_teamScoreResets = 0;
    bool m_userDisconnect = false;

    struct AppliedTimer {
        bool known = false;
        bool enabled = false;
        int interval = 0;
    };
    AppliedTimer m_applied[3];
};

} // namespace tallybot::app
