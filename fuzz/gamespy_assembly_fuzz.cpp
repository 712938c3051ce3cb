// Datagrams through the query cycle's reply road: detection, GameSpy assembly and the parsers.
// Input: one byte choosing the starting engine (unknown, pending, UT or AA), then datagrams, each
// a length byte followed by that many bytes. The assembly buffer must never hold more than the
// last datagram.

#include "app/app_settings.h"
#include "query/parsers.h"
#include "query/query_cycle.h"
#include "query/query_cycle_packets.h"
#include "tests/support/parsing_query_host.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace tallybot;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static const int kStartEngines[] = {query::kEngineUnknown, query::kEnginePending, query::kEngineUT,
                                        query::kEngineAA};
    query::QueryView view;
    query::GameState state;
    app::AppSettings settings;
    testsupport::ParsingQueryHost host{state, settings};
    query::QueryCycle cycle{view, state, settings, host};
    view.cmbGamServerText = "127.0.0.1:7777";
    cycle.cmdGamQuery_Click();
    state.EngineId = kStartEngines[data[0] % 4];

    std::string standalone;
    for (std::size_t at = 1; at < size;) {
        const std::size_t length = std::min<std::size_t>(data[at], size - at - 1);
        const std::string_view datagram(reinterpret_cast<const char*>(data + at + 1), length);
        at += 1 + length;
        cycle.sckGamServ_DataArrival(datagram, {});
        if (cycle.ReplyBuffer().size() > 255) std::abort(); // one datagram at most
        const auto whole = query::AssembleGameSpy(standalone, datagram);
        if (whole && whole->size() > 2 * 255) std::abort();
    }
    return 0;
}
