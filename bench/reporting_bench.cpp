// Template expansions per second for the two heaviest posts: the full teams post (score line,
// map line and a ten-line team table) and the players line with 50 players.

#include "app/app_settings.h"
#include "query/game_state.h"
#include "reporting/info_posts.h"

#include <string>

#include <benchmark/benchmark.h>

namespace {

using namespace tallybot;

struct CountingChannel : reporting::ChannelSink {
    void SendToChannel(const std::string& text) override { bytes += text.size(); }
    void NotifyUser(const std::string&, const std::string&) override {}
    std::string Nick() const override { return "Bot1"; }
    std::size_t bytes = 0;
};

struct Fixture {
    Fixture() {
        settings.ConnState = 3;
        settings.Profiles.CurrentProfile = 1;
        settings.Profiles.Entries[1].Advanced = 1;
        game.Status.HostName = "Zephra CTF Server";
        game.Status.MapName = "q3wctf1";
        game.Status.ScoreTime = "12:34";
        game.TeamScoreRed = 3;
        game.TeamScoreBlue = 2;
        for (int i = 1; i <= query::kMaxPlayers; ++i) {
            auto& p = game.Players[static_cast<std::size_t>(i)];
            p.Name = "Player" + std::to_string(i);
            p.Score = static_cast<std::int16_t>((i * 37) % 60 - 5);
            p.Ping = 20 + i;
            p.Team = 0;
        }
    }
    app::AppSettings settings;
    query::GameState game;
    std::string red = "Alpha", blue = "Bravo", server = "10.0.0.1:27960";
    reporting::ReportContext ctx{settings, game, red, blue, server, nullptr};
    reporting::ReportingState state;
    CountingChannel channel;
    reporting::InfoPosts posts{ctx, state, channel};
};

void BM_FullTeamsPost(benchmark::State& s) {
    Fixture f;
    f.game.Status.NumPlayers = 20;
    for (int i = 1; i <= 20; ++i)
        f.game.Players[static_cast<std::size_t>(i)].Team = i % 2 + 1;
    for (auto _ : s)
        f.posts.mnuPostTeams();
    benchmark::DoNotOptimize(f.channel.bytes);
    s.SetItemsProcessed(s.iterations() * 12); // 12 expanded lines per post
}
BENCHMARK(BM_FullTeamsPost);

void BM_PlayersPost50(benchmark::State& s) {
    Fixture f;
    f.game.Status.NumPlayers = query::kMaxPlayers;
    for (auto _ : s)
        f.posts.mnuPostPlayers();
    benchmark::DoNotOptimize(f.channel.bytes);
    s.SetItemsProcessed(s.iterations());
}
BENCHMARK(BM_PlayersPost50);

} // namespace

BENCHMARK_MAIN();
