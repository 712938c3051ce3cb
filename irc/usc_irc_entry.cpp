// Typed input: channel text, or a command after CommandPrefix.

#include "irc/pane_words.h"
#include "irc/usc_irc.h"

#include <cctype>

namespace tallybot::irc {

namespace {

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Upper(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// The first word of the arguments and the rest after its blank.
std::pair<std::string, std::string> SplitFirst(const std::string& arguments) {
    const auto blank = arguments.find(' ');
    if (blank == std::string::npos) return {arguments, {}};
    return {arguments.substr(0, blank), arguments.substr(blank + 1)};
}

bool IsOneOf(const std::string& word, std::initializer_list<const char*> words) {
    for (const char* w : words) {
        if (word == w) return true;
    }
    return false;
}

} // namespace

void uscIRC::ProcessUserEntry(const std::string& text) {
    Trapped("ProcessUserEntry", [&] {
        const std::string& prefix = m_props.CommandPrefix;
        if (text.compare(0, prefix.size(), prefix) != 0) {
            if (m_props.ControlType == 0) {
                AddText("*** You are not on a channel", m_props.EventColor);
            } else if (m_status != kJoined) {
                AddText("*** You are not connected to a server", m_props.EventColor);
            } else if (!Trim(text).empty()) {
                SendIRCData("PRIVMSG " + m_props.ChannelName + " :" + text);
                AddText("<" + m_props.Nick + "> " + text, 0);
            }
            return;
        }
        // The command word starts at the second character: a one-character prefix is assumed.
        const std::string padded = text + " ";
        const auto blank = padded.find(' ');
        const std::string command = blank >= 1 ? Upper(Trim(padded.substr(1, blank - 1))) : std::string();
        RunCommand(command, Trim(padded.substr(blank + 1)));
    });
}

void uscIRC::RunCommand(const std::string& command, const std::string& arguments) {
    const std::string& channel = m_props.ChannelName;
    const bool onChannel = m_props.ControlType != 0;
    const auto [first, rest] = SplitFirst(arguments);
    auto notOnChannel = [&] { AddText("*** You are not on a channel", m_props.EventColor); };

    if (command == "ME") {
        if (!onChannel) return notOnChannel();
        SendIRCData("PRIVMSG " + channel + " :\x01" + "ACTION " + arguments + "\x01");
        AddText("* " + m_props.Nick + " " + arguments, m_props.ActionColor);
    } else if (command == "JOIN") {
        SendIRCData("JOIN " + arguments);
    } else if (command == "MSG") {
        SendIRCData("PRIVMSG " + first + " :" + rest);
        AddText("-> *" + first + "* " + rest, 0);
    } else if (command == "TOPIC") {
        if (!onChannel) return notOnChannel();
        SendIRCData("TOPIC " + first + " :" + rest);
        AddText("*** " + m_props.Nick + " changes topic to '" + rest + "'", m_props.HighlightColor);
    } else if (command == "QUIT") {
        Disconnect(arguments);
    } else if (command == "INVITE") {
        SendIRCData("INVITE " + first + " :" + rest);
    } else if (IsOneOf(command, {"MODE", "SUMMON", "USERHOST", "ISON", "OPER", "STATS", "LINKS", "AWAY", "WHOIS",
                                 "LIST", "USERS", "ADMIN", "INFO", "WHO", "WHOWAS", "WALLOPS", "NICK"})) {
        SendIRCData(command + " " + arguments);
    } else if (IsOneOf(command, {"PART", "NAMES", "KICK"})) {
        if (!onChannel) return notOnChannel();
        SendIRCData(command + " " + arguments);
    } else if (command == "REHASH" || command == "RESTART") {
        SendIRCData(command);
    } else if (command == "PING") {
        m_pingTick = m_clock.TickCount();
        SendIRCData("PRIVMSG " + arguments + " :\x01PING " + std::to_string(m_pingTick) + "\x01");
        AddText("-> [" + arguments + "] PING", m_props.CTCPColor);
    } else if (command == "VERSION" || command == "TIME") {
        if (arguments.empty()) {
            SendIRCData(command);
        } else {
            SendIRCData("PRIVMSG " + arguments + " :\x01" + command + "\x01");
            AddText("-> [" + arguments + "] " + command, m_props.CTCPColor);
        }
    } else if (command == "0") {
        // Only this word is reported; every other unknown command is dropped, as ever.
        AddText(command + " - unknown command", m_props.EventColor);
    }
}

void uscIRC::ClickWord(const std::string& word) {
    switch (ClassifyWord(word)) {
    case WordKind::Link:
        if (m_view.OpenLink) m_view.OpenLink(word);
        break;
    case WordKind::Channel:
        SendIRCData("JOIN " + word);
        break;
    default:
        break;
    }
}

} // namespace tallybot::irc
