#pragma once
// The query cycle: Start/Stop of the query button, one query round per timer tick, one reply per
// arriving datagram, and the socket's error event. A plain state machine: events come in through
// the handler methods, requests go out through QuerySocket, everything the reply touches beyond
// the engine bookkeeping goes through QueryHost, and the window mirrors QueryView.

#include "query/a2s_exchange.h"
#include "query/game_data_log.h"
#include "query/game_state.h"
#include "query/probe_backoff.h"
#include "query/query_cycle_io.h"
#include "query/query_extras.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tallybot::query {

struct QuerySettings;

// Windows colour value (0x00BBGGRR) of an RGB triple.
constexpr std::uint32_t RgbColour(std::uint32_t r, std::uint32_t g, std::uint32_t b) {
    return r | g << 8 | b << 16;
}
inline constexpr std::uint32_t kColourConnecting = RgbColour(0xFF, 0xFF, 0x00);
inline constexpr std::uint32_t kColourOffline = RgbColour(0xFF, 0x00, 0x00);
inline constexpr std::uint32_t kColourOnline = RgbColour(0x00, 0xC0, 0x00);

// The controls of the main window that the query side drives; the window mirrors them.
struct QueryView {
    std::string cmbGamServerText;
    bool cmbGamServerEnabled = true;
    std::string cmdGamQueryCaption = "S&tart";
    std::string cmdProfilesCaption = "Profile: None";
    std::string lblQueryStatusCaption = "OFFLINE";
    std::uint32_t lblQueryStatusColour = kColourOffline;
    bool tmrGamQueryEnabled = false;
    int tmrGamQueryInterval = 1000;
    bool tmrIRCPostEnabled = false;
    bool cmdInfoToIRCEnabled = false;
    bool cmdAssignPlayersEnabled = false;
    bool cmdCorrectScoreEnabled = false;

    bool operator==(const QueryView&) const = default;
};

class QueryCycle {
public:
    // Every reference must outlive the cycle; socket and resolver may be attached later.
    QueryCycle(QueryView& view, GameState& state, QuerySettings& settings, QueryHost& host);

    void Attach(QuerySocket* socket, NameResolver* resolver);

    // Start when stopped, Stop when running.
    void cmdGamQuery_Click();
    // The answer to NameResolver::AddrByName; a stale ticket is ignored.
    void AddressResolved(int ticket, const std::string& address);
    void tmrGamQuery_Timer();
    void sckGamServ_DataArrival(std::string_view datagram, const LocalDateTime& now);
    void sckGamServ_Error(long number, const std::string& description);

    bool IsRunning() const;
    int MissedReplies() const { return m_missedReplies; }
    bool Probing() const { return m_probes.Probing(); }
    bool SocketErrorSeen() const { return m_socketErrorSeen; }
    const std::string& ReplyBuffer() const { return m_replyBuffer; }
    const GameDataLog& DataLog() const { return m_dataLog; }
    // The [Extras] switches in force, taken from the settings at every Start.
    const QueryExtras& Extras() const { return m_extras; }

private:
    void Start();
    void CompleteStart(const std::string& address);
    void Stop();
    void SendRound();
    void TrapRoundError(long number, const std::string& description);
    void WriteToDataLog(std::string_view reply, const LocalDateTime& now);
    void Dispatch(std::string_view reply);
    // [Extras] additions, in query_cycle_extras.cpp.
    bool StartIPv6(std::string& field);
    void DispatchA2S(std::string_view datagram);
    void BeginProbing();
    void Probe();
    void EndProbing();
    void NoticeStop(const char* procedure, const std::string& why);
    int EngineInterval(int engineId) const;
    void HintModernQuake3(std::string_view reply);

    QueryView& m_view;
    GameState& m_state;
    QuerySettings& m_settings;
    QueryHost& m_host;
    QuerySocket* m_socket = nullptr;
    NameResolver* m_resolver = nullptr;
    GameDataLog m_dataLog;

    int m_missedReplies = 0;
    bool m_justDetected = false;
    bool m_socketErrorSeen = false;
    std::string m_replyBuffer;
    int m_resolveTicket = 0; // the name lookup whose answer may still start the query
    int m_roundDepth = 0;    // rounds on the stack: a restart from a round's trap waits for the timer
    QueryExtras m_extras;
    A2SExchange m_a2s;
    ProbeBackoff m_probes;        // QueryRetry: pauses between probes of a silent server
    bool m_versionHinted = false; // the ModernQuake3 hint goes out once a run
};

} // namespace tallybot::query
