#pragma once
// What the query cycle needs from its surroundings: a UDP socket, name resolution, and the host
// (main logic) that owns match reporting, the profile choice and the operator's message boxes.
// Tests hand in fakes; the Qt adapter and the main logic hand in the real ones.

#include <string>
#include <string_view>

namespace tallybot::query {

// The one UDP socket of the query, shaped like the socket control it replaces: a remote host set
// at Start, a remote port set every round, datagrams sent to both. A refused send or an invalid
// port throws vb::VbError, which the round's error trap handles.
class QuerySocket {
public:
    virtual ~QuerySocket() = default;
    virtual void SetRemoteHost(const std::string& address) = 0;
    virtual void SetRemotePort(long port) = 0;
    virtual void SendData(std::string_view datagram) = 0;
};

// Resolves a host name without blocking; the answer comes back through
// QueryCycle::AddressResolved(ticket, address), with an empty address when the name is unknown.
class NameResolver {
public:
    virtual ~NameResolver() = default;
    virtual void AddrByName(const std::string& name, int ticket) = 0;
};

// The main logic's side of a reply: parsing into the game state, match reporting, the profile
// choice, the window refresh, message boxes and the application log.
class QueryHost {
public:
    virtual ~QueryHost() = default;
    // The engine entry for a reply (GameSpy already assembled); runs with the active profile.
    virtual void ParseReply(int engineId, std::string_view reply) = 0;
    // CalcTeamScores(status, -1, 0) on the cleared state at Stop.
    virtual void ResetTeamScores() = 0;
    virtual void HandleQ3Info(std::string_view reply) = 0;
    virtual void RefreshDisplay() = 0;
    virtual void CalcCappedPlayer(int scorePerCap, int matchOver) = 0;
    virtual void SelectProfile() = 0;
    // Refresh of the main window's controls after the query started (enabled menus and buttons).
    virtual void RefreshControls() = 0;
    virtual void ShowMessage(const std::string& text) = 0;
    virtual void Log(const std::string& module, const std::string& procedure, long errorNumber,
                     const std::string& message, bool showMessage) = 0;
    // What the operator should know without a window: why the query stops, waits or probes
    // ([Extras] QueryRetry), or which switch a server needs. One log entry; the main logic also
    // prints it on standard error.
    virtual void Notice(const std::string& procedure, const std::string& text) {
        Log("frmMain", procedure, 0, text, false);
    }
};

} // namespace tallybot::query
