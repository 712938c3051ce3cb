// The line handler: one server line in, pane lines, replies and host events out.

#include "irc/irc_line.h"
#include "irc/usc_irc.h"

namespace tallybot::irc {

namespace {

bool StartsWith(std::string_view s, std::string_view p) {
    return s.substr(0, p.size()) == p;
}

// The text after the first blank, without the closing CTCP delimiter.
std::string CtcpArgument(const std::string& trailing) {
    const auto blank = trailing.find(' ');
    if (blank == std::string::npos) return {};
    std::string arg = trailing.substr(blank + 1);
    if (!arg.empty() && arg.back() == '\x01') arg.pop_back();
    return arg;
}

} // namespace

void uscIRC::HandleLine(std::string_view line) {
    const IrcLine l = ParseIrcLine(line, m_compat.TrailingAfterPrefix);
    if (l.Text.empty()) return;

    if (l.FullPrefix() && m_status == kJoinSent) {
        m_ownHost = l.Host;
        SetStatus(kJoined);
    }
    // A PING is answered whatever follows it, even a bare number.
    if (!l.HasPrefix && l.W[1] == "PING") {
        AnswerPing(l);
        return;
    }
    if (IsNumericWord(l.W[2])) {
        HandleNumeric(l, std::stoi(l.W[2]));
        return;
    }
    if (!l.HasPrefix) {
        const std::string& command = l.W[1];
        if (command == "NOTICE") {
            AddText("-" + l.W[2] + "- " + l.Trailing, m_props.NoticeColor);
        } else if (command == "ERROR") {
            const auto colon = l.Text.find(':');
            AddText("[IRC] " + (colon == std::string::npos ? std::string() : l.Text.substr(colon + 1)),
                    m_props.ErrorColor);
            LoseConnection();
        }
        return;
    }
    HandleCommand(l);
}

void uscIRC::AnswerPing(const IrcLine& l) {
    SendIRCData("PONG :" + l.Trailing);
    if (ShowsInfo() && m_props.ShowPing) AddText("*** PING? PONG!", m_props.HighlightColor);
}

void uscIRC::AutoJoin() {
    SendIRCData("JOIN " + m_props.ChannelName);
    SetStatus(kJoinSent);
}

void uscIRC::HandleCommand(const IrcLine& l) {
    const std::string& command = l.W[2];
    const std::string& nick = l.Nick;
    if (command == "NOTICE") {
        HandleNotice(l);
    } else if (command == "JOIN") {
        AddText("*** " + nick + " has joined " + l.Trailing, m_props.HighlightColor);
        if (KeepsUserList()) {
            m_users.Add(nick);
            UserListChanged();
        }
        if (nick != m_props.Nick && m_events.UserJoin) m_events.UserJoin(nick);
    } else if (command == "NICK") {
        const std::string newNick = l.Trailing;
        AddText("*** " + nick + " is now known as " + newNick, m_props.HighlightColor);
        if (m_users.Rename(nick, newNick)) UserListChanged();
        if (nick == m_props.Nick) m_props.Nick = newNick;
        if (m_events.UserNameChange) m_events.UserNameChange(nick, newNick);
    } else if (command == "PRIVMSG") {
        HandlePrivmsg(l);
    } else if (command == "MODE") {
        const std::string& who = nick.empty() ? l.Prefix : nick;
        AddText("*** " + who + " sets mode: " + l.W[4] + " " + l.W[5], m_props.HighlightColor);
        const std::string& mode = l.W[4];
        bool changed = false;
        if (mode == "+o") changed = m_users.SetMark(l.W[5], "@");
        if (mode == "+v") changed = m_users.SetMark(l.W[5], "+");
        if (mode == "-o" || mode == "-v") {
            const UserEntry* entry = m_users.Find(l.W[5]);
            if (entry && entry->Mark == (mode == "-o" ? "@" : "+")) changed = m_users.SetMark(l.W[5], "");
        }
        if (changed) UserListChanged();
        if (m_events.UserModeChange) m_events.UserModeChange(l.W[4], l.W[5]);
    } else if (command == "PART") {
        // Names our own channel, whatever the line says.
        AddText("*** " + nick + " has left " + m_props.ChannelName, m_props.HighlightColor);
        if (KeepsUserList() && m_users.Remove(nick)) UserListChanged();
        if (m_events.UserLeave) m_events.UserLeave(nick, kLeavePart);
    } else if (command == "KICK") {
        HandleKick(l);
    } else if (command == "QUIT") {
        AddText("*** " + nick + " has quit IRC (" + l.Trailing + ")", m_props.EventColor);
        if (KeepsUserList() && m_users.Remove(nick)) UserListChanged();
        if (m_events.UserLeave) m_events.UserLeave(nick, kLeaveQuit);
    }
}

void uscIRC::HandleNotice(const IrcLine& l) {
    const std::string& t = l.Trailing;
    const std::string& nick = l.Nick;
    for (const char* kind : {"VERSION", "PING", "TIME"}) {
        if (StartsWith(t, std::string("\x01") + kind)) {
            const auto blank = t.find(' ');
            const std::string reply = blank == std::string::npos ? std::string() : t.substr(blank + 1);
            AddText("[" + nick + " " + kind + " reply]: " + reply, m_props.CTCPColor);
            return;
        }
    }
    if (StartsWith(t, "\x01"
                      "DCC")) {
        AddText(nick + " - " + t, m_props.NoticeColor);
    } else {
        AddText("-" + nick + "- " + t, m_props.NoticeColor);
    }
}

void uscIRC::HandlePrivmsg(const IrcLine& l) {
    const std::string& t = l.Trailing;
    const std::string& nick = l.Nick;
    if (StartsWith(t, "\x01"
                      "ACTION")) {
        std::string action = t.substr(7);
        if (!action.empty() && action.front() == ' ') action.erase(0, 1);
        if (!action.empty() && action.back() == '\x01') action.pop_back();
        AddText("* " + nick + " " + action, m_props.ActionColor);
        return;
    }
    if (StartsWith(t, "\x01PING") || StartsWith(t, "\x01VERSION") || StartsWith(t, "\x01TIME")) {
        HandleCtcpRequest(l);
        return;
    }
    if (StartsWith(t, "\x01"
                      "DCC")) {
        if (m_props.EnableDCC) HandleDccOffer(l);
        return;
    }
    if (l.W[3] == m_props.Nick) {
        AddText("*" + nick + "* -> " + t, 0);
    } else {
        AddText("<" + nick + "> " + t, 0);
    }
    const std::string& prefix = m_props.UserCommandPrefix;
    if (m_props.EnableTrigger && StartsWith(t, prefix) && m_events.UserCommand) m_events.UserCommand(t, nick, l.User);
}

void uscIRC::HandleCtcpRequest(const IrcLine& l) {
    const std::string& t = l.Trailing;
    const std::string& nick = l.Nick;
    if (StartsWith(t, "\x01PING")) {
        NotifyUser(nick, "\x01PING " + CtcpArgument(t) + "\x01");
        AddText("[" + nick + " PING]", m_props.CTCPColor);
    } else if (StartsWith(t, "\x01VERSION")) {
        NotifyUser(nick, "\x01VERSION " + std::string(kVersionBanner) + "\x01");
        AddText("[" + nick + " VERSION]", m_props.CTCPColor);
    } else {
        NotifyUser(nick, "\x01TIME " + CtcpTime() + "\x01");
        AddText("[" + nick + " TIME]", m_props.CTCPColor);
    }
}

void uscIRC::HandleKick(const IrcLine& l) {
    const std::string& kicked = l.W[4];
    const std::string& kicker = l.Nick;
    if (kicked == m_props.Nick) {
        AddText("*** You were kicked from the channel by " + kicker + " (" + l.Trailing + ") !", m_props.ErrorColor);
        if (KeepsUserList()) {
            m_users.Clear();
            UserListChanged();
        }
        if (m_props.AutoRejoin) {
            AddText("*** Attempting to rejoin " + m_props.ChannelName + "...", m_props.HighlightColor);
            SendIRCData("JOIN :" + m_props.ChannelName);
        }
    } else {
        AddText("*** " + kicked + " was kicked from the channel by " + kicker + " (" + l.Trailing + ") !",
                m_props.HighlightColor);
        // The entry removed is the kicker's: kept as the control always did it.
        if (KeepsUserList() && m_users.Remove(kicker)) UserListChanged();
    }
    if (m_events.UserLeave) m_events.UserLeave(kicker, kLeaveKick);
}

} // namespace tallybot::irc
