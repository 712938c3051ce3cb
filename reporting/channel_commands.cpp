#include "reporting/channel_commands.h"

#include "base/error_trap.h"

namespace tallybot::reporting {

namespace {

struct Command {
    const char* word;
    int ReportSettings::*allowed;
    void (InfoPosts::*post)();
};

// Checked in this order; "!info" answers with the help post.
constexpr Command kCommands[] = {
    {"!info", &ReportSettings::AllowInfo, &InfoPosts::mnuPostHelp},
    {"!about", &ReportSettings::AllowAbout, &InfoPosts::mnuPostAbout},
    {"!sinfo", &ReportSettings::AllowServInfo, &InfoPosts::mnuPostServer},
    {"!pinfo", &ReportSettings::AllowPlayerInfo, &InfoPosts::mnuPostPlayers},
    {"!tinfo", &ReportSettings::AllowTeamInfo, &InfoPosts::mnuPostTeams},
    {"!ssinfo", &ReportSettings::AllowSServerInfo, &InfoPosts::mnuPostServerShort},
    {"!spinfo", &ReportSettings::AllowSPlayerInfo, &InfoPosts::mnuPostPlayersShort},
    {"!stinfo", &ReportSettings::AllowSTeamInfo, &InfoPosts::mnuPostTeamsShort},
    {"!cust", &ReportSettings::AllowCustom, &InfoPosts::mnuPostCustomMess},
};

enum class Result { CarriedOut, NotAllowed, Unknown };

} // namespace

std::vector<std::string> SplitWords(const std::string& text) {
    std::vector<std::string> words;
    std::size_t start = 0;
    for (std::size_t blank = text.find(' '); blank != std::string::npos; blank = text.find(' ', start)) {
        words.push_back(text.substr(start, blank - start));
        start = blank + 1;
    }
    words.push_back(text.substr(start));
    return words;
}

void ChannelCommands::LogRequest(const std::string& nick, const std::string& command, const char* outcome) {
    m_pane.AddText("[SYSTEM] " + nick + " requested " + command + outcome, kSystemColour);
}

void ChannelCommands::ircMain_UserCommand(const std::string& commandLine, const std::string& nick,
                                          const std::string& /*user*/) {
    base::Trap(m_ctx.log, "frmMain", "ircMain_UserCommand", [&] {
        const ReportSettings& s = m_ctx.settings;
        const std::vector<std::string> words = SplitWords(commandLine);
        const std::string& command = words.front();

        // Several instances can share a channel: each answers only when named. Refusals here and
        // for spam leave the delay as it is.
        if (s.CommandParameter == 1) {
            if (words.size() < 2) return LogRequest(nick, command, " -> ignored (no instance specified).");
            if (words[1] != m_channel.Nick()) return LogRequest(nick, command, " -> ignored (wrong instance).");
        }
        if (m_state.SendDelayRunning) return LogRequest(nick, command, " -> ignored (spam protection).");

        Result result = Result::Unknown;
        for (const Command& c : kCommands) {
            if (command != c.word) continue;
            result = Result::NotAllowed;
            if (s.*c.allowed == 1) {
                (m_posts.*c.post)();
                result = Result::CarriedOut;
            }
            break;
        }

        // The master switch only changes the wording: an allowed command has already been answered.
        const bool userComm = s.AllowUserComm == 1;
        if (result == Result::CarriedOut && userComm)
            LogRequest(nick, command, " -> sent.");
        else if (result == Result::Unknown && userComm)
            LogRequest(nick, command, " -> ignored (command unknown).");
        else
            LogRequest(nick, command, " -> ignored (not allowed).");
        m_state.SendDelayRunning = true;
    });
}

void ChannelCommands::tmrIRCSendDelay_Timer() {
    if (!m_state.SendDelayRunning) return;
    ++m_state.SendDelayTicks;
    if (m_state.SendDelayTicks >= m_ctx.settings.SendDelay) {
        m_state.SendDelayRunning = false;
        m_state.SendDelayTicks = 0;
    }
}

void ChannelCommands::ircMain_UserJoin(const std::string& nick) {
    base::Trap(m_ctx.log, "frmMain", "ircMain_UserJoin", [&] {
        const ReportSettings& s = m_ctx.settings;
        if (s.NoticeEnabled != 1) return;
        m_channel.NotifyUser(nick, m_posts.Expand(s.NoticeMsg));
        m_pane.AddText("[SYSTEM] Sent welcome notice to " + nick, kSystemColour);
    });
}

void ChannelCommands::PostOnJoinMessage() {
    base::Trap(m_ctx.log, "frmMain", "ircMain_StatusChange", [&] {
        if (m_ctx.settings.OnJoinEnabled == 1) m_posts.Post(m_ctx.settings.OnJoinMessage);
    });
}

} // namespace tallybot::reporting
