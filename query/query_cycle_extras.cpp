// The query cycle's [Extras] additions: the start on an IPv6 address and the A2S exchange.

#include "base/error_trap.h"
#include "query/query_cycle.h"
#include "query/query_settings.h"
#include "query/server_address.h"

namespace tallybot::query {

bool QueryCycle::StartIPv6(std::string& field) {
    const std::optional<ServerFieldParts> parts = SplitIPv6Field(field, m_settings.DefaultPort);
    if (!parts) return false;
    const AddressCheck check =
        ValidateIPv6Address(parts->host, parts->port, [this](const std::string& m) { m_host.ShowMessage(m); });
    if (check.kind == AddressCheck::Kind::Address) CompleteStart(check.text);
    return true;
}

void QueryCycle::DispatchA2S(std::string_view datagram) {
    A2SExchange::Outcome outcome = m_a2s.Receive(datagram);
    // The challenge answer is sent at once; a refused send waits for the next round.
    if (outcome.resend && m_socket) base::ResumeNext([&] { m_socket->SendData(*outcome.resend); });
    if (outcome.reply) base::ResumeNext([&] { m_host.ParseReply(kEngineA2S, *outcome.reply); });
    base::ResumeNext([&] { m_host.RefreshDisplay(); });
    base::ResumeNext([&] { m_host.CalcCappedPlayer(m_settings.Profiles.Active().ScorePerCap, 0); });
}

namespace {

std::string Seconds(int ms) {
    return std::to_string(ms / 1000) + " s";
}

} // namespace

void QueryCycle::BeginProbing() {
    m_missedReplies = 0;
    const int pause = m_probes.Begin();
    m_view.tmrGamQueryInterval = pause;
    m_view.lblQueryStatusCaption = "NO REPLY - NEXT PROBE IN " + Seconds(pause);
    m_view.lblQueryStatusColour = kColourConnecting;
    m_view.tmrIRCPostEnabled = false; // no interval posts of a state that may be stale
    m_host.Notice("tmrGamQuery_Timer", "Gameserver is not responding. Next probe in " + Seconds(pause) + ".");
}

void QueryCycle::Probe() {
    const int pause = m_probes.Next();
    m_view.tmrGamQueryInterval = pause;
    m_view.lblQueryStatusCaption = "NO REPLY - PROBING, NEXT IN " + Seconds(pause);
    m_host.Notice("tmrGamQuery_Timer",
                  "Gameserver is still not responding. Probing; next probe in " + Seconds(pause) + ".");
}

void QueryCycle::EndProbing() {
    m_probes.End();
    m_view.tmrGamQueryInterval = EngineInterval(m_state.EngineId);
    m_view.lblQueryStatusCaption = "ONLINE - " + EngineCodeWithExtras(m_state.EngineId, m_extras);
    m_view.lblQueryStatusColour = kColourOnline;
    if (m_settings.ConnState == 3 && m_settings.Profiles.Active().Interval == 1) m_view.tmrIRCPostEnabled = true;
    m_host.Notice("sckGamServ_DataArrival", "Gameserver answers again.");
}

void QueryCycle::NoticeStop(const char* procedure, const std::string& why) {
    if (!m_extras.QueryRetry) return;
    const bool inRound = std::string_view(procedure) == "tmrGamQuery_Timer";
    const std::string what = inRound ? "a second error in a query round: " : "a second socket error: ";
    const bool restart = inRound && m_settings.Reconnect == 1;
    m_host.Notice(procedure,
                  "Query stopped after " + what + why + (restart ? "; starting afresh (Reconnect=1)." : "."));
}

void QueryCycle::HintModernQuake3(std::string_view reply) {
    if (m_extras.ModernQuake3 || m_versionHinted) return;
    const std::string engine = PresentDayEngineNeedingSwitch(reply, m_state.EngineId);
    if (engine.empty()) return;
    m_versionHinted = true;
    m_host.Notice("sckGamServ_DataArrival", "The game server runs " + engine +
                                                ": set ModernQuake3=1 in [Extras] of Tallybot.ini to query it as "
                                                "Quake 3.");
}

} // namespace tallybot::query
