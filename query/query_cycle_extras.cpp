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

} // namespace tallybot::query
