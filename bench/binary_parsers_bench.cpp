// Replies parsed per second for the GameSpy, Half-Life, FarCry, UT2003 and Doom 3 families, on the
// reply fixtures of tests/data. Each iteration parses one full round of the family's replies.

#include "query/parsers.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace tallybot;
using Parser = void (*)(std::string_view, query::GameState&, const profiles::GameProfile&);

std::string Fixture(const std::string& relative) {
    std::filesystem::path data = std::filesystem::path(TALLYBOT_SOURCE_ROOT) / "tests" / "data";
    std::ifstream in(data / relative, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void ParseRound(benchmark::State& bench, Parser parse, const std::vector<std::string>& names) {
    std::vector<std::string> replies;
    for (const std::string& name : names)
        replies.push_back(Fixture(name));
    if (replies.empty() || replies.front().empty()) {
        bench.SkipWithError("reply fixtures not found");
        return;
    }
    const profiles::GameProfile profile{};
    query::GameState state;
    for (auto _ : bench) {
        for (const std::string& reply : replies)
            parse(reply, state, profile);
        benchmark::DoNotOptimize(state.Status.NumPlayers);
    }
    bench.SetItemsProcessed(bench.iterations() * static_cast<int64_t>(replies.size()));
}

void BM_GameSpyStatus(benchmark::State& s) {
    ParseRound(s, query::ParseGameSpy, {"ut/status.bin"});
}
void BM_HalfLifeRound(benchmark::State& s) {
    ParseRound(s, query::ParseHLReply, {"hl/info.bin", "hl/players.bin", "hl/rules.bin"});
}
void BM_FarCryRound(benchmark::State& s) {
    ParseRound(s, query::ParseFCReply, {"fc/status.bin", "fc/players.bin", "fc/rules.bin"});
}
void BM_UT2003Round(benchmark::State& s) {
    ParseRound(s, query::ParseUT2003Reply, {"ut2k3/info.bin", "ut2k3/rules.bin", "ut2k3/players.bin"});
}
void BM_Doom3Info(benchmark::State& s) {
    ParseRound(s, query::ParseD3EngineData, {"d3/info.bin"});
}

BENCHMARK(BM_GameSpyStatus);
BENCHMARK(BM_HalfLifeRound);
BENCHMARK(BM_FarCryRound);
BENCHMARK(BM_UT2003Round);
BENCHMARK(BM_Doom3Info);

} // namespace

BENCHMARK_MAIN();
