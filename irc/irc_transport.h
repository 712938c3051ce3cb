#pragma once
// The seams between the IRC core and the outside world. The core (uscIRC) calls out through
// IrcTransport, IrcClock, DccQuestions and DccFileSink; an adapter owns the real sockets, turns
// their events into calls on IrcSocketEvents, and never interprets a byte itself.
//
// Everything is single-threaded: an adapter may call an IrcSocketEvents entry point from inside
// one of its own IrcTransport methods (for example a listen failure reported at once).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallybot::irc {

// Socket states as the control tests them (the classic Winsock control's numbering).
enum SocketState : int {
    kSockClosed = 0,
    kSockOpen = 1,
    kSockListening = 2,
    kSockConnectionPending = 3,
    kSockResolvingHost = 4,
    kSockHostResolved = 5,
    kSockConnecting = 6,
    kSockConnected = 7,
    kSockClosing = 8,
    kSockError = 9,
};

// What the core asks of the network. Three sockets: the server connection (sckServer), the
// ident listener (sckIdent) and the DCC receive connection (sckDCC).
class IrcTransport {
public:
    virtual ~IrcTransport() = default;

    // sckServer: asynchronous connect; the outcome arrives as OnServerConnected or OnServerError.
    virtual void ServerConnect(const std::string& host, int port) = 0;
    // Writes bytes as they are (the core has already framed and bounded the line).
    virtual void ServerSend(std::string_view bytes) = 0;
    // Closes at once; after it ServerState() is kSockClosed. No OnServerClosed follows.
    virtual void ServerClose() = 0;
    virtual int ServerState() const = 0;
    virtual std::string ServerLocalHostName() const = 0; // host field of the USER line
    virtual std::string ServerRemoteHost() const = 0;    // the host the socket connected to

    // sckIdent: listen on port; a failure is reported through OnIdentError (possibly at once).
    virtual void IdentListen(int port) = 0;
    virtual int IdentState() const = 0;
    // Stops listening, accepts the pending request requestId, writes line, then closes the
    // accepted connection once the line is flushed. The listener stays closed until the next
    // IdentListen.
    virtual void IdentAnswer(long requestId, std::string_view line) = 0;
    virtual void IdentClose() = 0;

    // sckDCC: connect to a dotted IPv4 address; outcome as OnDccConnected or OnDccError.
    virtual void DccConnect(const std::string& dottedAddress, int port) = 0;
    virtual void DccSend(std::string_view bytes) = 0; // acknowledgements
    virtual void DccClose() = 0;

    // This machine: host name (empty and errorCode set when it cannot be read) and the first
    // IPv4 address the host name resolves to (empty when none).
    virtual std::string MachineHostName(int& errorCode) const = 0;
    virtual std::string ResolveIPv4(const std::string& hostName) const = 0;
};

// Local calendar time, as the clock supplies it.
struct LocalTime {
    int Year = 1970;
    int Month = 1;   // 1..12
    int Day = 1;     // 1..31
    int Weekday = 4; // 0 Sunday .. 6 Saturday
    int Hour = 0;
    int Minute = 0;
    int Second = 0;
    bool operator==(const LocalTime&) const = default;
};

// Time is passed in: the core never reads a clock of its own.
class IrcClock {
public:
    virtual ~IrcClock() = default;
    virtual std::uint32_t TickCount() const = 0;                 // milliseconds, wraps
    virtual LocalTime Now() const = 0;                           // local time now
    virtual LocalTime FromEpoch(std::int64_t seconds) const = 0; // seconds since 1970 as local time
};

// The operator's answers to a DCC offer. The headless runner answers no to every question and
// returns no file, so every offer is declined.
class DccQuestions {
public:
    virtual ~DccQuestions() = default;
    // A yes/no question box; true for yes.
    virtual bool AskYesNo(const std::string& title, const std::string& text) = 0;
    // A save-file dialog proposing a plain base name; the full path chosen, or nothing.
    virtual std::optional<std::string> ChooseSaveFile(const std::string& title, const std::string& proposedName) = 0;
};

// Where DCC data goes. Paths are those ChooseSaveFile returned.
class DccFileSink {
public:
    virtual ~DccFileSink() = default;
    virtual std::optional<std::uint64_t> FileLength(const std::string& path) = 0; // nothing if absent
    virtual bool Remove(const std::string& path) = 0;
    virtual bool Open(const std::string& path, bool append) = 0;
    virtual bool Write(std::string_view bytes) = 0;
    virtual void Close() = 0;
};

// The core's entry points for socket events; the adapter calls these and nothing else.
class IrcSocketEvents {
public:
    virtual ~IrcSocketEvents() = default;

    virtual void OnServerConnected() = 0;
    // One natural read chunk (at most a few KiB); the core frames lines itself.
    virtual void OnServerData(std::string_view bytes) = 0;
    virtual void OnServerClosed() = 0; // closed by the peer
    virtual void OnServerError(int number, const std::string& description) = 0;

    // A connection request on the ident listener; requestId is the adapter's number for it,
    // localPort the listener's own port.
    virtual void OnIdentConnectionRequest(long requestId, int localPort) = 0;
    virtual void OnIdentData(std::string_view bytes) = 0;
    virtual void OnIdentError(int number, const std::string& description) = 0;

    virtual void OnDccConnected() = 0;
    virtual void OnDccData(std::string_view bytes) = 0;
    virtual void OnDccClosed() = 0;
    virtual void OnDccError(int number, const std::string& description) = 0;
};

} // namespace tallybot::irc
