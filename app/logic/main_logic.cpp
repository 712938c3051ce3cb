#include "app/logic/main_logic.h"

#include "base/error_trap.h"
#include "profiles/profile_selection.h"

namespace tallybot::app {

namespace {

constexpr const char* kModule = "frmMain";
constexpr int kPostTimerInterval = 1000; // tmrIRCPost and tmrIRCSendDelay, fixed in the form's design

} // namespace

MainLogic::MainLogic(irc::IrcTransport& transport, const irc::IrcClock& clock, irc::DccQuestions* questions,
                     irc::DccFileSink* files)
    : m_ctx{m_settings, m_game, m_view.txtTeamNameRed, m_view.txtTeamNameBlue, m_view.Query.cmbGamServerText, nullptr},
      m_reporting(m_ctx, m_reportState, *this, *this, [this] { RefreshDisplay(); }),
      m_irc(transport, clock, questions, files), m_query(m_view.Query, m_game, m_settings, *this) {
    // The window's design data for ircMain.
    irc::IrcProperties& props = m_irc.Properties();
    props.ControlType = 4;
    props.HighlightColor = 0x009900;
    props.Font = "Courier New";

    irc::IrcEvents& events = m_irc.Events();
    events.StatusChange = [this] { ircMain_StatusChange(); };
    events.Disconnected = [this] { ircMain_Disconnected(); };
    events.UserJoin = [this](const std::string& nick) {
        m_reporting.Commands.ircMain_UserJoin(nick);
        Sync();
    };
    events.UserCommand = [this](const std::string& text, const std::string& nick, const std::string& user) {
        m_reporting.Commands.ircMain_UserCommand(text, nick, user);
        Sync();
    };
}

MainLogic::~MainLogic() {
    m_irc.Events() = {};
}

void MainLogic::Handler(const char* procedure, const std::function<void()>& body) {
    base::Trap(m_log.get(), kModule, procedure, body);
    Sync();
}

void MainLogic::Step(const char* module, const char* procedure, const std::function<void()>& body) {
    base::Trap(m_log.get(), module, procedure, body);
}

void MainLogic::Sync() {
    const query::QueryView& q = m_view.Query;
    SyncTimer(MainTimer::GamQuery, q.tmrGamQueryEnabled, q.tmrGamQueryInterval);
    SyncTimer(MainTimer::IRCPost, q.tmrIRCPostEnabled, kPostTimerInterval);
    SyncTimer(MainTimer::IRCSendDelay, m_reportState.SendDelayRunning, kPostTimerInterval);
    if (m_viewObserver) m_viewObserver();
}

void MainLogic::SyncTimer(MainTimer timer, bool enabled, int intervalMs) {
    // A form timer with interval 0 never fires; a QTimer would fire at once and again.
    enabled = enabled && intervalMs > 0;
    AppliedTimer& applied = m_applied[static_cast<int>(timer)];
    if (applied.known && applied.enabled == enabled && applied.interval == intervalMs) return;
    applied = {true, enabled, intervalMs};
    if (m_timers) m_timers->SetTimer(timer, enabled, intervalMs);
}

// --- buttons and menus ---

void MainLogic::cmdGamQuery_Click() {
    m_query.cmdGamQuery_Click(); // the cycle traps its own errors
    Sync();
}

void MainLogic::UpdatePostControls() {
    const int conn = m_settings.ConnState;
    m_view.mnuStatToIRCEnabled = conn == 1 || conn == 3;
    m_view.Query.cmdInfoToIRCEnabled = conn == 3;
}

void MainLogic::RefreshProfileMenu() {
    Handler("RefreshProfileMenu", [&] {
        const profiles::ProfileTable& table = m_settings.Profiles;
        m_view.Query.tmrIRCPostEnabled = table.Active().Interval == 1 && m_settings.ConnState == 3;
        for (int i = 1; i <= profiles::kMaxProfiles; ++i) {
            MenuEntry& entry = m_view.mnuProfileSel[static_cast<std::size_t>(i)];
            entry.Visible = i <= table.ProfileCount;
            entry.Caption = entry.Visible ? table.Entries[static_cast<std::size_t>(i)].ProfileName : std::string();
        }
    });
}

void MainLogic::mnuProfileSel_Click(int index) {
    Handler("mnuProfileSel_Click", [&] {
        if (index < 1 || index > m_settings.Profiles.ProfileCount) throw vb::SubscriptOutOfRange();
        m_settings.Profiles.CurrentProfile = index;
        m_view.Query.cmdProfilesCaption = profiles::ProfileCaption(m_settings.Profiles);
    });
    RefreshProfileMenu();
}

// The posts trap their own errors under their own names.
void MainLogic::mnuPostServer_Click() {
    m_reporting.Posts.mnuPostServer();
    Sync();
}
void MainLogic::mnuPostServerShort_Click() {
    m_reporting.Posts.mnuPostServerShort();
    Sync();
}
void MainLogic::mnuPostPlayers_Click() {
    m_reporting.Posts.mnuPostPlayers();
    Sync();
}
void MainLogic::mnuPostPlayersShort_Click() {
    m_reporting.Posts.mnuPostPlayersShort();
    Sync();
}
void MainLogic::mnuPostTeams_Click() {
    m_reporting.Posts.mnuPostTeams();
    Sync();
}
void MainLogic::mnuPostTeamsShort_Click() {
    m_reporting.Posts.mnuPostTeamsShort();
    Sync();
}
void MainLogic::mnuPostAbout_Click() {
    m_reporting.Posts.mnuPostAbout();
    Sync();
}
void MainLogic::mnuPostHelp_Click() {
    m_reporting.Posts.mnuPostHelp();
    Sync();
}
void MainLogic::mnuPostCustomMess_Click() {
    m_reporting.Posts.mnuPostCustomMess();
    Sync();
}

// --- timers ---

void MainLogic::tmrGamQuery_Timer() {
    m_query.tmrGamQuery_Timer();
    Sync();
}

void MainLogic::tmrIRCPost_Timer() {
    m_reporting.Events.tmrIRCPost_Timer();
    Sync();
}

void MainLogic::tmrIRCSendDelay_Timer() {
    m_reporting.Commands.tmrIRCSendDelay_Timer();
    Sync();
}

// --- sinks ---

void MainLogic::SendToChannel(const std::string& text) {
    m_irc.SendToChannel(text);
}

void MainLogic::NotifyUser(const std::string& nick, const std::string& text) {
    m_irc.NotifyUser(nick, text);
}

std::string MainLogic::Nick() const {
    return m_irc.Nick();
}

void MainLogic::AddText(const std::string& text, int colour) {
    m_irc.AddText(text, colour);
}

} // namespace tallybot::app
