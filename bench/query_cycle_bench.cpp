// Query cycle costs in process: from a datagram's arrival to the match-reporting call (with the
// real parsers), and the CPU cost of one query round.

#include "app/app_settings.h"
#include "query/parsers.h"
#include "query/query_cycle.h"
#include "tests/support/parsing_query_host.h"

#include <string>

#include <benchmark/benchmark.h>

namespace {

using namespace tallybot;
using namespace std::string_literals;

struct NullSocket : query::QuerySocket {
    void SetRemoteHost(const std::string&) override {}
    void SetRemotePort(long) override {}
    void SendData(std::string_view datagram) override { bytes += datagram.size(); }
    std::size_t bytes = 0;
};

// Real parsing; the reporting call only counts, which is where the measured road ends.
struct ParsingHost : testsupport::ParsingQueryHost {
    using ParsingQueryHost::ParsingQueryHost;
    void HandleQ3Info(std::string_view) override { ++reports; }
    void CalcCappedPlayer(int, int) override { ++reports; }
    long reports = 0;
};

struct Rig {
    Rig() {
        cycle.Attach(&socket, nullptr);
        view.cmbGamServerText = "127.0.0.1:27960";
        cycle.cmdGamQuery_Click();
    }
    query::QueryView view;
    query::GameState state;
    app::AppSettings settings;
    ParsingHost host{state, settings};
    NullSocket socket;
    query::QueryCycle cycle{view, state, settings, host};
};

std::string Q3Reply(int players) {
    std::string reply = "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32c linux-i386\\sv_hostname\\^1Bench "
                        "^4Arena\\mapname\\q3wctf1\\g_gametype\\4\\score_red\\3\\score_blue\\1\\score_time\\12:15\n"s;
    for (int i = 0; i < players; ++i)
        reply += std::to_string(i) + " " + std::to_string(40 + i) + " \"^" + std::to_string(i % 8) + "Player" +
                 std::to_string(i) + "\"\n";
    return reply;
}

void BM_Q3DatagramToReporting(benchmark::State& bench) {
    Rig rig;
    const std::string reply = Q3Reply(static_cast<int>(bench.range(0)));
    rig.cycle.sckGamServ_DataArrival(reply, {}); // detection happens once, outside the loop
    for (auto _ : bench)
        rig.cycle.sckGamServ_DataArrival(reply, {});
    benchmark::DoNotOptimize(rig.host.reports);
    bench.SetItemsProcessed(bench.iterations());
}
BENCHMARK(BM_Q3DatagramToReporting)->Arg(2)->Arg(16)->Arg(50);

void BM_GameSpyTwoDatagramsToReporting(benchmark::State& bench) {
    Rig rig;
    rig.state.EngineId = query::kEngineUT;
    const std::string first = "\\gamename\\ut\\hostname\\Bench\\mapname\\CTF-Face\\numplayers\\2\\queryid\\1.1";
    const std::string second = "\\player_0\\A\\frags_0\\3\\ping_0\\40\\team_0\\0\\player_1\\B\\frags_1\\1\\ping_1\\60"
                               "\\team_1\\1\\queryid\\1.2\\final\\";
    for (auto _ : bench) {
        rig.cycle.sckGamServ_DataArrival(first, {});
        rig.cycle.sckGamServ_DataArrival(second, {});
    }
    bench.SetItemsProcessed(bench.iterations());
}
BENCHMARK(BM_GameSpyTwoDatagramsToReporting);

void BM_ProbeRound(benchmark::State& bench) {
    Rig rig;
    for (auto _ : bench) {
        rig.cycle.tmrGamQuery_Timer();
        if (rig.cycle.MissedReplies() == 9) {
            // A reply now and then keeps the silent-round count from stopping the run.
            bench.PauseTiming();
            rig.cycle.sckGamServ_DataArrival("", {});
            rig.state.EngineId = query::kEngineUnknown;
            bench.ResumeTiming();
        }
    }
    benchmark::DoNotOptimize(rig.socket.bytes);
}
BENCHMARK(BM_ProbeRound);

void BM_HalfLifeRound(benchmark::State& bench) {
    Rig rig;
    rig.state.EngineId = query::kEngineHL;
    for (auto _ : bench) {
        rig.cycle.tmrGamQuery_Timer();
        if (rig.cycle.MissedReplies() == 9) {
            bench.PauseTiming();
            rig.cycle.sckGamServ_DataArrival("\xFF\xFF\xFF\xFF", {});
            bench.ResumeTiming();
        }
    }
    benchmark::DoNotOptimize(rig.socket.bytes);
}
BENCHMARK(BM_HalfLifeRound);

} // namespace

BENCHMARK_MAIN();
