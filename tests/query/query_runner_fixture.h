#pragma once
// The Qt query adapter with the real parsers and team scores, as the query integration tests drive
// it against a game server on 127.0.0.1: the host records what reached it (parses and the map after
// each, Q3 infos, refreshes, messages, log entries, notices); match reporting is not wired.

#include "app/app_settings.h"
#include "query/parsers.h"
#include "query/qt/query_runner.h"
#include "query/query_cycle.h"
#include "tests/support/parsing_query_host.h"
#include "tests/support/qt_wait.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::query::itest {

struct RecordingHost : testsupport::ParsingQueryHost {
    using ParsingQueryHost::ParsingQueryHost;
    void ParseReply(int engineId, std::string_view reply) override {
        ParsingQueryHost::ParseReply(engineId, reply);
        maps.push_back(state.Status.MapName);
    }
    void ResetTeamScores() override { CalcTeamScores(state, -1, 0, settings.Profiles.Active()); }
    void HandleQ3Info(std::string_view) override { ++q3Infos; }
    void RefreshDisplay() override { ++refreshes; }
    void ShowMessage(const std::string& text) override { messages.push_back(text); }
    void Log(const std::string&, const std::string&, long, const std::string& message, bool) override {
        logs.push_back(message);
    }
    void Notice(const std::string&, const std::string& text) override { notices.push_back(text); }

    std::vector<std::string> maps; // the map after each parse: the server stayed readable
    int q3Infos = 0;
    int refreshes = 0;
    std::vector<std::string> messages, logs, notices;
};

class QueryRunnerFixture : public ::testing::Test {
protected:
    explicit QueryRunnerFixture(int queryTimeMs = 60) { SetQueryTime(queryTimeMs); }
    void SetQueryTime(int ms) {
        settings.QueryTime = ms;
        view.tmrGamQueryInterval = ms;
    }
    void StartQuery(const std::string& field) {
        view.cmbGamServerText = field;
        runner.Click();
    }
    void StartQuery(std::uint16_t port) { StartQuery("127.0.0.1:" + std::to_string(port)); }
    bool WaitForLabel(const std::string& label) {
        return testsupport::WaitUntil([&] { return view.lblQueryStatusCaption == label; });
    }

    QueryView view;
    GameState state;
    app::AppSettings settings;
    RecordingHost host{state, settings};
    QueryCycle cycle{view, state, settings, host};
    QueryRunner runner{cycle, view};
};

} // namespace tallybot::query::itest
