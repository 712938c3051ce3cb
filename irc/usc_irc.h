#pragma once
// uscIRC: the IRC client control's core. It connects to one server and one channel, frames and
// handles the server's lines, keeps the pane model, the user list and the input history, and
// reaches the outside only through the interfaces of irc_transport.h. The widget in irc/qt/
// paints PaneLines and forwards keys and clicks; the adapter forwards socket events.

#include "base/vb_convert.h"
#include "irc/dcc_receive.h"
#include "irc/input_history.h"
#include "irc/irc_framing.h"
#include "irc/irc_session_hooks.h"
#include "irc/irc_transport.h"
#include "irc/pane_model.h"
#include "irc/server_compat.h"
#include "irc/user_list.h"

#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <string>
#include <string_view>

namespace tallybot::irc {

struct IrcLine;

// The persisted properties; the comment names each one's property-bag key.
struct IrcProperties {
    std::string ServerAddress = "irc.quakenet.org";            // "Server"
    std::int32_t ServerPort = 6667;                            // "Port"
    bool Ident = true;                                         // "Ident"
    std::int32_t IdentPort = 113;                              // "IdentPort"
    std::string IdentSystem = "WIN32";                         // "IdentSystem"
    std::string IdentUserID = "kavik";                         // "IdentUserID"
    std::string Email = "tallybot@localhost";                  // "Email"
    std::string RealName = "KavikIRC";                         // "RealName"
    std::string ChannelName = "#Zephra";                       // "Channel" (assign through SetChannelName)
    std::string Nick = "Corvamo";                              // "Nick"
    bool AutoRejoin = true;                                    // "AutoRejoin"
    std::string QuitMessage = "uscIRC 1.0 - Tallybot";         // "QuitMessage"
    std::string UserCommandPrefix = "!";                       // "UserCommandPrefix"
    Colour BackColor = 0xFFFFFF;                               // "BackColor"
    Colour EventColor = 0x660000;                              // "EventColor"
    Colour ErrorColor = 255;                                   // "ErrorColor"
    Colour HighlightColor = static_cast<std::int16_t>(0x9900); // "HighlightColor": sign-extended, kept
    Colour ActionColor = 0x990099;                             // "ActionColor"
    Colour NoticeColor = 102;                                  // "NoticeColor"
    Colour CTCPColor = 255;                                    // "CTCPColor"
    std::string Font;                                          // "Font": family name, empty = ambient
    std::int32_t ControlType = 3;                              // "ControlType"
    std::string CommandPrefix = "/";                           // "CommandPrefix"
    bool TimeStamp = false;                                    // "TimeStamp"
    bool ShowPing = true;                                      // "ShowPing"
    bool EnableDCC = true;                                     // "EnableDCC"
    bool EnableTrigger = true;                                 // "EnableTrigger"
};

// The fixed banner of CTCP VERSION answers (not the QuitMessage property).
inline constexpr std::string_view kVersionBanner = "uscIRC 1.0 - Tallybot IRC control";

// ConnectStatus values.
enum ConnectState : int {
    kNotConnected = 0,
    kConnectRequested = 1,
    kJoinSent = 2,
    kJoined = 3,
};

// UserLeave reasons.
enum LeaveReason : int { kLeaveQuit = 0, kLeavePart = 1, kLeaveKick = 2 };

// The fourteen events raised to the host, in declaration order. Unset callbacks are skipped.
struct IrcEvents {
    std::function<void()> StatusChange;
    // nick, file name (as offered), address (dotted), port, size in bytes
    std::function<void(const std::string&, const std::string&, const std::string&, long, double)> DCCRequest;
    // file name (as saved), bytes now in the file, offered size
    std::function<void(const std::string&, std::uint64_t, std::uint64_t)> DCCTransfer;
    std::function<void(const std::string& nick)> UserJoin;
    std::function<void(const std::string& mode, const std::string& target)> UserModeChange;
    std::function<void(const std::string& oldNick, const std::string& newNick)> UserNameChange;
    std::function<void(const std::string& nick, int reason)> UserLeave;
    std::function<void(const std::string& text, const std::string& nick, const std::string& user)> UserCommand;
    std::function<void()> Disconnected;
    std::function<void()> Resize;
    std::function<void(int keyCode, int shift)> KeyUp;
    std::function<void(int keyAscii)> KeyPress;
    std::function<void(int keyCode, int shift)> KeyDown;
    std::function<void(int button, int shift, float x, float y)> MouseMove;
};

// What the widget (or the headless printer) observes; not host events.
struct IrcView {
    std::function<void()> PaneCleared;
    std::function<void(const PaneLine&)> PaneLineAdded;
    // A line the program itself sent to the channel or a user (no CR LF); the window shows none.
    std::function<void(const std::string& target, const std::string& text)> OwnLineSent;
    std::function<void()> UserListChanged;
    std::function<void(const std::string& link)> OpenLink; // the system's default handler
    // ShowErrorNumerics: an error numeric the classic table skips was shown (headless prints it).
    std::function<void(int numeric, const std::string& text)> ServerErrorShown;
};

class uscIRC final : public IrcSocketEvents {
public:
    // questions and files may be null: every DCC offer is then declined.
    uscIRC(IrcTransport& transport, const IrcClock& clock, DccQuestions* questions = nullptr,
           DccFileSink* files = nullptr);

    IrcProperties& Properties() { return m_props; }
    const IrcProperties& Properties() const { return m_props; }
    // Two or more characters without "#" get one; shorter values become "#Zephra".
    void SetChannelName(const std::string& value);
    const std::string& ChannelName() const { return m_props.ChannelName; }
    const std::string& Nick() const { return m_props.Nick; }
    void SetServerPassword(std::string password) { m_serverPassword = std::move(password); }
    // Extras for present-day servers (server_compat.h); read at each registration.
    void SetCompat(const ServerCompat& compat) { m_compat = compat; }
    const ServerCompat& Compat() const { return m_compat; }
    // Extras (irc_session.h): how connections end, and a new attempt after a loss. Without hooks
    // the control behaves as it always did.
    void SetSessionHooks(IrcSessionHooks* hooks) { m_hooks = hooks; }
    // Connect again while the host still counts the session: state 1 without StatusChange, the
    // pane kept.
    void Reconnect();

    IrcEvents& Events() { return m_events; }
    IrcView& View() { return m_view; }

    int ConnectStatus() const { return m_status; }
    const std::string& OwnHost() const { return m_ownHost; }

    // Public operations.
    void Connect();
    void Disconnect(std::string quitText);
    void SendIRCData(const std::string& line);
    void SendToChannel(const std::string& text);
    void NotifyUser(const std::string& nick, const std::string& text);
    void AddText(const std::string& text, Colour colour);
    void ErrorOut(const std::string& procedure, long number, const std::string& description);
    void ProcessUserEntry(const std::string& text);
    std::string LocalHostName() const;
    std::string GetIPAddress() const;
    static double Dotted2LongIP(std::string_view dotted);
    static std::string LongIP2Dotted(double address);

    // Pane, user list and input box.
    const std::deque<PaneLine>& PaneLines() const { return m_pane; }
    const UserList& Users() const { return m_users; }
    InputHistory& History() { return m_history; }
    // Enter in the input box: store in the history, then interpret.
    void EnterInput(const std::string& text);
    // A click on a pane word: links open, channels are joined.
    void ClickWord(const std::string& word);

    // One received line as framing delivered it (public for tests, fuzzing and benchmarks).
    void HandleLine(std::string_view line);

    // IrcSocketEvents
    void OnServerConnected() override;
    void OnServerData(std::string_view bytes) override;
    void OnServerClosed() override;
    void OnServerError(int number, const std::string& description) override;
    void OnIdentConnectionRequest(long requestId, int localPort) override;
    void OnIdentData(std::string_view bytes) override;
    void OnIdentError(int number, const std::string& description) override;
    void OnDccConnected() override;
    void OnDccData(std::string_view bytes) override;
    void OnDccClosed() override;
    void OnDccError(int number, const std::string& description) override;

    // Older lines leave the model, as a chat window keeps a bounded scrollback; the window's
    // pane keeps its own copy, so this bounds what a headless run holds.
    static constexpr std::size_t kPaneLimit = 500;

private:
    // Line handling (usc_irc_lines.cpp, usc_irc_numerics.cpp, usc_irc_ctcp.cpp, usc_irc_dcc.cpp).
    void HandleNumeric(const IrcLine& l, int numeric);
    void HandleCommand(const IrcLine& l);
    void HandlePrivmsg(const IrcLine& l);
    void HandleNotice(const IrcLine& l);
    void HandleCtcpRequest(const IrcLine& l);
    void HandleKick(const IrcLine& l);
    void HandleDccOffer(const IrcLine& l);
    void AnswerPing(const IrcLine& l);
    void AutoJoin();
    // ServerCompat additions (usc_irc_compat.cpp).
    std::string UserName() const;
    void ShowNumeric(const IrcLine& l, int numeric); // the classic table
    void AfterNumeric(const IrcLine& l, int numeric);
    void ShowErrorNumeric(const IrcLine& l, int numeric);
    std::string FormatDate(std::int64_t epochSeconds) const;
    std::string CtcpTime() const;

    // User entry (usc_irc_entry.cpp).
    void RunCommand(const std::string& command, const std::string& arguments);

    // Errors inside a handler end that handler with an "[IRC] " line, as the control's traps do.
    template <class Body> void Trapped(const char* procedure, Body&& body);
    void SetStatus(int status);
    void OpenConnection();    // Connect's steps 3 to 5, without the event
    void CloseServerSocket(); // the peer's close: socket closed, "*** Disconnected", state 0
    void LoseConnection();    // ERROR line or socket error
    void Raise(const std::function<void()>& event) const {
        if (event) event();
    }
    bool ServerUsable() const;
    void WriteWire(const std::string& line); // the one place lines leave the program
    void ReportOwnLine(const std::string& target, const std::string& text);
    bool ShowsInfo() const { return m_props.ControlType == 0 || m_props.ControlType == 3 || m_props.ControlType == 4; }
    bool KeepsUserList() const { return m_props.ControlType == 1 || m_props.ControlType == 3; }
    void UserListChanged();

    IrcTransport& m_transport;
    const IrcClock& m_clock;
    DccQuestions* m_questions;
    DccFileSink* m_files;

    IrcProperties m_props;
    IrcEvents m_events;
    IrcView m_view;

    int m_status = kNotConnected;
    IrcSessionHooks* m_hooks = nullptr;
    std::string m_serverPassword;
    ServerCompat m_compat;
    bool m_welcomed = false; // 001 arrived on this connection
    int m_nickRetries = 0;   // 433 answered with a "_" nick before 001
    std::string m_ownHost;
    bool m_identAnswered = false;
    std::uint32_t m_pingTick = 0;

    LineFramer m_framer;
    std::deque<PaneLine> m_pane;
    UserList m_users;
    InputHistory m_history;
    DccReceive m_dcc;
};

template <class Body> void uscIRC::Trapped(const char* procedure, Body&& body) {
    try {
        body();
    } catch (const vb::VbError& e) {
        ErrorOut(procedure, e.Number(), e.what());
    } catch (const std::exception& e) {
        ErrorOut(procedure, 1000, e.what());
    }
}

} // namespace tallybot::irc
