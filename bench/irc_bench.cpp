// IRC lines handled per second: a joined control reading a realistic mix of server traffic
// (channel chat with commands, joins, parts, numerics, PING), framed from 4 KiB reads.

#include "tests/irc/fake_irc_transport.h"

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using tallybot::irc::testing::FakeClock;
using tallybot::irc::testing::FakeTransport;

const std::vector<std::string> kMix = {
    ":alice!a@host.example PRIVMSG #Zephra :!sinfo please\r\n",
    ":bob!b@10.0.0.2 PRIVMSG #Zephra :nice cap \x02red\x02 team\r\n",
    ":carl!c@h JOIN :#Zephra\r\n",
    ":carl!c@h PART #Zephra :later\r\n",
    ":irc.example.net 372 Corvamo :- Message of the day line\r\n",
    ":irc.example.net 353 Corvamo = #Zephra :@alice +bob carl dave\r\n",
    "PING :irc.example.net\r\n",
    ":dave!d@h NOTICE Corvamo :hello there\r\n",
};

std::string Traffic(int lines) {
    std::string all;
    for (int i = 0; i < lines; ++i)
        all += kMix[static_cast<std::size_t>(i) % kMix.size()];
    return all;
}

void BM_HandleLines(benchmark::State& state) {
    FakeTransport transport;
    FakeClock clock;
    tallybot::irc::uscIRC irc{transport, clock};
    tallybot::irc::testing::JoinAsServerWould(irc);
    irc.Events().UserCommand = [](const std::string&, const std::string&, const std::string&) {};
    const int lines = 1000;
    const std::string traffic = Traffic(lines);
    for (auto _ : state) {
        for (std::size_t pos = 0; pos < traffic.size(); pos += 4096)
            irc.OnServerData(traffic.substr(pos, 4096));
        transport.sent.clear();
    }
    state.SetItemsProcessed(state.iterations() * lines);
}
BENCHMARK(BM_HandleLines);

void BM_PaneLineWithCodes(benchmark::State& state) {
    const std::string text = "\x02[SYSTEM]\x02 \x03"
                             "04Red\x03 12 : \x03"
                             "12Blue\x03 9 \x1F"
                             "capture\x1F by player";
    for (auto _ : state)
        benchmark::DoNotOptimize(tallybot::irc::BuildPaneLine(text, 255));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PaneLineWithCodes);

} // namespace

BENCHMARK_MAIN();
