// The A2S road: arbitrary datagrams through the challenge exchange and split reassembly, every
// whole reply into the parser; detection with every switch on; the IPv6 server field forms.

#include "query/a2s_exchange.h"
#include "query/a2s_parser.h"
#include "query/query_extras.h"
#include "query/server_address.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tallybot::query;
    std::string_view input(reinterpret_cast<const char*>(data), size);

    // The first byte of each record gives the length of the datagram that follows.
    A2SExchange exchange;
    GameState state;
    tallybot::profiles::GameProfile profile;
    profile.AutoTeams = 0;
    int step = 0;
    std::string_view rest = input;
    while (!rest.empty()) {
        const std::size_t length = static_cast<unsigned char>(rest.front());
        rest.remove_prefix(1);
        const std::string_view datagram = rest.substr(0, length);
        rest.remove_prefix(datagram.size());
        if (length == 0) {
            exchange.NextRequest(step);
            continue;
        }
        const A2SExchange::Outcome outcome = exchange.Receive(datagram);
        if (outcome.reply) {
            if (outcome.reply->size() > kMaxA2SBytes + 4 || outcome.reply->compare(0, 4, "\xFF\xFF\xFF\xFF") != 0)
                __builtin_trap();
            ParseA2SReply(*outcome.reply, state, profile);
            if (state.Status.NumPlayers < 0 || state.Status.NumPlayers > kMaxPlayers) __builtin_trap();
        }
        if (outcome.resend && outcome.resend->size() > 29) __builtin_trap(); // info request and challenge
    }

    GameState detected;
    DetectEngineWithExtras(input, detected, QueryExtras{true, true, true, false});
    if (EngineCodeWithExtras(detected.EngineId, QueryExtras{true, true, true, false}).empty() &&
        detected.EngineId != kEngineUnknown && detected.EngineId != kEnginePending)
        __builtin_trap();

    std::string field(input.substr(0, 80));
    if (auto parts = SplitIPv6Field(field, 27960)) {
        if (field.front() != '[') __builtin_trap();
        (void)IsIPv6Literal(parts->host);
    }
    (void)ServerFieldPortText(field, true);
    return 0;
}
