// Replies parsed per second, per engine family, through the entry the query cycle calls.

#include "query/parsers.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>

namespace {

using namespace tallybot;

std::string Fixture(const char* relative) {
    std::filesystem::path file = std::filesystem::path(TALLYBOT_SOURCE_ROOT) / "tests" / "data" / relative;
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void ParseReplies(benchmark::State& bench, int engine, const char* fixture, int advanced, int autoTeams) {
    const std::string reply = Fixture(fixture);
    if (reply.empty()) {
        bench.SkipWithError("fixture missing");
        return;
    }
    profiles::GameProfile profile;
    profile.Advanced = advanced;
    profile.AutoTeams = autoTeams;
    query::GameState state;
    state.EngineId = engine;
    for (auto _ : bench) {
        query::ParseEngineReply(engine, reply, state, profile);
        benchmark::DoNotOptimize(state.Status.NumPlayers);
    }
    bench.SetItemsProcessed(bench.iterations());
    bench.SetBytesProcessed(bench.iterations() * static_cast<std::int64_t>(reply.size()));
}

void BM_ParseQ3_16Players_AutoTeams(benchmark::State& bench) {
    ParseReplies(bench, query::kEngineQ3, "q3/ctf_16players.bin", 1, 1);
}
void BM_ParseQ3_16Players_SummedTeams(benchmark::State& bench) {
    ParseReplies(bench, query::kEngineQ3, "q3/ctf_16players.bin", 0, 0);
}
void BM_ParseET_3Players(benchmark::State& bench) {
    ParseReplies(bench, query::kEngineET, "et/sw_3players.bin", 1, 1);
}
void BM_ParseQ2_3Players(benchmark::State& bench) {
    ParseReplies(bench, query::kEngineQ2, "q2/dm_3players.bin", 0, 0);
}

void BM_DetectEngine_Q3(benchmark::State& bench) {
    const std::string reply = Fixture("q3/ctf_16players.bin");
    for (auto _ : bench) {
        query::GameState state;
        query::DetectEngine(reply, state);
        benchmark::DoNotOptimize(state.EngineId);
    }
    bench.SetItemsProcessed(bench.iterations());
}

} // namespace

BENCHMARK(BM_ParseQ3_16Players_AutoTeams);
BENCHMARK(BM_ParseQ3_16Players_SummedTeams);
BENCHMARK(BM_ParseET_3Players);
BENCHMARK(BM_ParseQ2_3Players);
BENCHMARK(BM_DetectEngine_Q3);
BENCHMARK_MAIN();
