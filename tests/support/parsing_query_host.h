#pragma once
// A query host that runs the real engine parsers on the game state and ignores every other call:
// what drives the query cycle's reply road from the fuzzers, benchmarks and tests. Header-only, so
// the fuzz and bench programs use it without the test support library.

#include "app/app_settings.h"
#include "query/parsers.h"
#include "query/query_cycle_io.h"

#include <string>
#include <string_view>

namespace tallybot::testsupport {

struct ParsingQueryHost : query::QueryHost {
    ParsingQueryHost(query::GameState& s, app::AppSettings& a) : state(s), settings(a) {}
    void ParseReply(int engineId, std::string_view reply) override {
        query::ParseEngineReply(engineId, reply, state, settings.Profiles.Active());
    }
    void ResetTeamScores() override {}
    void HandleQ3Info(std::string_view) override {}
    void RefreshDisplay() override {}
    void CalcCappedPlayer(int, int) override {}
    void SelectProfile() override {}
    void RefreshControls() override {}
    void ShowMessage(const std::string&) override {}
    void Log(const std::string&, const std::string&, long, const std::string&, bool) override {}
    query::GameState& state;
    app::AppSettings& settings;
};

} // namespace tallybot::testsupport
