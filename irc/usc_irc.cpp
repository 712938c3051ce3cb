#include "irc/usc_irc.h"

#include "irc/irc_wire.h"

#include <cmath>
#include <cstdio>

namespace tallybot::irc {

namespace {

bool EndsWithCrLf(const std::string& text) {
    return text.size() >= 2 && text.compare(text.size() - 2, 2, "\r\n") == 0;
}

} // namespace

uscIRC::uscIRC(IrcTransport& transport, const IrcClock& clock, DccQuestions* questions, DccFileSink* files)
    : m_transport(transport), m_clock(clock), m_questions(questions), m_files(files) {}

void uscIRC::SetChannelName(const std::string& value) {
    if (value.size() < 2) {
        m_props.ChannelName = "#Zephra";
    } else if (value.front() != '#') {
        m_props.ChannelName = "#" + value;
    } else {
        m_props.ChannelName = value;
    }
}

void uscIRC::SetStatus(int status) {
    m_status = status;
    if (status >= kConnectRequested && status <= kJoined) Raise(m_events.StatusChange);
}

bool uscIRC::ServerUsable() const {
    const int state = m_transport.ServerState();
    return state != kSockClosed && state != kSockError;
}

void uscIRC::WriteWire(const std::string& line) {
    m_transport.ServerSend(WireLine(line));
}

void uscIRC::Connect() {
    if (m_hooks) m_hooks->OnHostConnect();
    Trapped("Connect", [&] {
        const int type = m_props.ControlType;
        if (type == 1 || type == 2) {
            SendIRCData("JOIN " + m_props.ChannelName);
            SetStatus(kJoinSent);
            return;
        }
        m_pane.clear();
        if (m_view.PaneCleared) m_view.PaneCleared();
        AddText("*** Connecting to " + m_props.ServerAddress + " (" + std::to_string(m_props.ServerPort) + ")",
                m_props.EventColor);
        OpenConnection();
        SetStatus(kConnectRequested);
    });
}

void uscIRC::OpenConnection() {
    m_transport.ServerConnect(m_props.ServerAddress, m_props.ServerPort);
    m_identAnswered = false;
    m_welcomed = false;
    m_nickRetries = 0;
    if (m_transport.IdentState() != kSockListening && m_props.Ident) m_transport.IdentListen(m_props.IdentPort);
}

void uscIRC::Reconnect() {
    Trapped("Connect", [&] {
        if (m_status != kNotConnected) return;
        AddText("*** Connecting to " + m_props.ServerAddress + " (" + std::to_string(m_props.ServerPort) + ")",
                m_props.EventColor);
        OpenConnection();
        m_status = kConnectRequested;
    });
}

void uscIRC::Disconnect(std::string quitText) {
    if (m_hooks) m_hooks->OnHostDisconnect();
    Trapped("Disconnect", [&] {
        if (m_status == kNotConnected) return;
        for (char& c : quitText) {
            if (c == ' ') c = '\xA0'; // the server sees one word, on purpose
        }
        const int type = m_props.ControlType;
        if (type == 1 || type == 2) {
            SendIRCData("PART :" + m_props.ChannelName);
        } else {
            SendIRCData("QUIT " + quitText);
        }
        Raise(m_events.Disconnected);
    });
}

void uscIRC::SendIRCData(const std::string& line) {
    Trapped("SERVER", [&] {
        if (!ServerUsable()) return;
        WriteWire(EndsWithCrLf(line) ? line : line + "\r\n");
    });
}

void uscIRC::SendToChannel(const std::string& text) {
    Trapped("SendToChannel", [&] {
        if (m_props.ControlType == 0 || !ServerUsable()) return;
        WriteWire("PRIVMSG " + m_props.ChannelName + " :" + (EndsWithCrLf(text) ? text : text + "\r\n"));
        ReportOwnLine(m_props.ChannelName, text);
    });
}

void uscIRC::NotifyUser(const std::string& nick, const std::string& text) {
    Trapped("NotifyUser", [&] {
        if (!ServerUsable()) return;
        WriteWire("NOTICE " + nick + " :" + (EndsWithCrLf(text) ? text : text + "\r\n"));
        ReportOwnLine(nick, text);
    });
}

void uscIRC::ReportOwnLine(const std::string& target, const std::string& text) {
    if (m_view.OwnLineSent) m_view.OwnLineSent(target, EndsWithCrLf(text) ? text.substr(0, text.size() - 2) : text);
}

void uscIRC::AddText(const std::string& text, Colour colour) {
    std::string line = EndsWithCrLf(text) ? text.substr(0, text.size() - 2) : text;
    if (m_props.TimeStamp) {
        const LocalTime now = m_clock.Now();
        char stamp[16];
        std::snprintf(stamp, sizeof stamp, "[%02d:%02d] ", now.Hour % 100, now.Minute % 100);
        line = stamp + line;
    }
    m_pane.push_back(BuildPaneLine(line, colour));
    if (m_pane.size() > kPaneLimit) m_pane.pop_front();
    if (m_view.PaneLineAdded) m_view.PaneLineAdded(m_pane.back());
}

void uscIRC::ErrorOut(const std::string& procedure, long number, const std::string& description) {
    if (procedure.empty()) return;
    AddText("[IRC] " + procedure + " Error #" + std::to_string(number) + ": " + description, m_props.ErrorColor);
}

void uscIRC::UserListChanged() {
    if (m_view.UserListChanged) m_view.UserListChanged();
}

void uscIRC::EnterInput(const std::string& text) {
    m_history.Store(text);
    ProcessUserEntry(text);
}

std::string uscIRC::LocalHostName() const {
    int error = 0;
    return m_transport.MachineHostName(error);
}

std::string uscIRC::GetIPAddress() const {
    int error = 0;
    const std::string name = m_transport.MachineHostName(error);
    if (name.empty()) {
        return "Windows Sockets error " + std::to_string(error) +
               " has occurred. Unable to successfully get Host Name.\r\n";
    }
    return m_transport.ResolveIPv4(name);
}

double uscIRC::Dotted2LongIP(std::string_view dotted) {
    double parts[4] = {0, 0, 0, 0};
    for (int i = 0; i < 4; ++i) {
        const auto dot = dotted.find('.');
        parts[i] = vb::Val(dotted.substr(0, dot));
        if (dot == std::string_view::npos) break;
        dotted.remove_prefix(dot + 1);
    }
    return parts[0] * 16777216.0 + parts[1] * 65536.0 + parts[2] * 256.0 + parts[3];
}

std::string uscIRC::LongIP2Dotted(double address) {
    if (!std::isfinite(address) || address < 0) address = 0;
    const auto n = static_cast<std::uint32_t>(std::fmod(std::floor(address), 4294967296.0));
    return std::to_string(n >> 24) + "." + std::to_string((n >> 16) & 0xFF) + "." + std::to_string((n >> 8) & 0xFF) +
           "." + std::to_string(n & 0xFF);
}

// sckServer

void uscIRC::OnServerConnected() {
    Trapped("SERVER", [&] {
        if (!m_serverPassword.empty()) SendIRCData("PASS " + m_serverPassword);
        // " : " before the real name: the server sees it with a leading blank, as always.
        SendIRCData("USER " + UserName() + " " + m_transport.ServerLocalHostName() + " " +
                    m_transport.ServerRemoteHost() + " : " + m_props.RealName);
        SendIRCData("NICK " + m_props.Nick);
    });
}

void uscIRC::OnServerData(std::string_view bytes) {
    Trapped("SERVER", [&] {
        LineFramer::Result arrival = m_framer.Feed(bytes);
        if (arrival.Overflow) throw vb::SubscriptOutOfRange();
        for (const auto& line : arrival.Lines)
            HandleLine(line);
        HandleLine({});
    });
}

void uscIRC::OnServerClosed() {
    CloseServerSocket();
    if (m_hooks) m_hooks->OnConnectionLost();
}

void uscIRC::CloseServerSocket() {
    m_transport.ServerClose();
    AddText("*** Disconnected", m_props.EventColor);
    m_status = kNotConnected;
}

void uscIRC::OnServerError(int number, const std::string& description) {
    ErrorOut("SERVER", number, description);
    LoseConnection();
}

void uscIRC::LoseConnection() {
    if (m_hooks && m_hooks->ReconnectsAfterLoss()) {
        CloseServerSocket();
        m_hooks->OnConnectionLost();
        return;
    }
    Disconnect(m_props.QuitMessage);
}

// sckIdent

void uscIRC::OnIdentConnectionRequest(long requestId, int localPort) {
    Trapped("IDENT", [&] {
        const int state = m_transport.IdentState();
        if (state == kSockClosed || state == kSockError || m_identAnswered) return;
        m_identAnswered = true;
        m_transport.IdentAnswer(requestId, WireLine(std::to_string(localPort) + ", " + std::to_string(requestId) +
                                                    ":USERID:" + m_props.IdentSystem + ":" + m_props.IdentUserID));
    });
}

void uscIRC::OnIdentData(std::string_view) {
    // The reply goes out without reading the query.
}

void uscIRC::OnIdentError(int number, const std::string& description) {
    ErrorOut("IDENT", number, description);
}

} // namespace tallybot::irc
