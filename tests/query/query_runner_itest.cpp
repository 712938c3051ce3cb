// The Qt query adapter with the real parsers against tallybot-gamesim on 127.0.0.1: detection of
// every engine, the query port after a pointer reply, sub-query rotation, time-out on silence,
// datagrams from a foreign port, and a GameSpy reply split over two datagrams.

#include "tests/query/query_runner_fixture.h"
#include "tests/support/gamesim_process.h"
#include "tests/support/qt_wait.h"

#include <string>
#include <vector>

#include <QUdpSocket>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using testsupport::GamesimProcess;
using testsupport::WaitUntil;

const char* const kMatch = "host Tally Arena\nmap q3ctf1\ntimelimit 20\nmaxplayers 16\n"
                           "player Alice red 4 40\nplayer Bob blue 2 60\n";

using QueryRunnerTest = itest::QueryRunnerFixture;

class EngineDetection : public QueryRunnerTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(EngineDetection, ProbeRoundFindsTheEngineAndItsMap) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start(GetParam(), kMatch)) << sim.Output();
    StartQuery(sim.Port());
    ASSERT_TRUE(WaitForLabel("ONLINE - " + std::string(GetParam()))) << view.lblQueryStatusCaption;
    EXPECT_TRUE(WaitUntil([&] { return state.Status.MapName == "q3ctf1"; })) << state.Status.MapName;
    runner.Click();
    EXPECT_FALSE(cycle.IsRunning());
}

INSTANTIATE_TEST_SUITE_P(EveryEngine, EngineDetection,
                         ::testing::Values("Q2", "Q3", "UT", "HL", "RTCW", "EF", "JK2", "SoF2", "UT2k3", "MoH", "ET",
                                           "JA", "CoD", "AA", "EF2", "FC", "D3"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(QueryRunnerTest, GameSpyIsAskedOnThePortPlusOneAndAssembledInOrder) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("UT", kMatch)) << sim.Output();
    StartQuery(sim.Port());
    ASSERT_TRUE(WaitForLabel("ONLINE - UT")) << view.lblQueryStatusCaption;
    EXPECT_EQ(state.QueryPortOffset, 1);
    // Host name from the first datagram, players from the second.
    ASSERT_TRUE(WaitUntil([&] { return state.Status.NumPlayers == 2; }));
    EXPECT_EQ(state.Status.HostName, "Tally Arena");
    EXPECT_EQ(state.Players[1].Name, "Alice");
    EXPECT_EQ(state.Players[2].Name, "Bob");
    EXPECT_EQ(cycle.ReplyBuffer(), "");
}

class SubQueries : public QueryRunnerTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(SubQueries, RotateAtAThirdOfTheInterval) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start(GetParam(), kMatch)) << sim.Output();
    StartQuery(sim.Port());
    ASSERT_TRUE(WaitForLabel("ONLINE - " + std::string(GetParam())));
    // Server information, players and rules each come from their own sub-query.
    EXPECT_TRUE(WaitUntil([&] {
        return state.Status.HostName == "Tally Arena" && state.Players[1].Name == "Alice" &&
               state.Status.TimeLimit == 20;
    })) << state.Status.HostName
        << "/" << state.Players[1].Name << "/" << int(state.Status.TimeLimit);
    EXPECT_EQ(runner.Timer().interval(), 20);
    EXPECT_EQ(view.tmrGamQueryInterval, 20);
}

INSTANTIATE_TEST_SUITE_P(ThreeStepEngines, SubQueries, ::testing::Values("HL", "UT2k3", "FC"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(QueryRunnerTest, AQueryTimeOfZeroLeavesTheTimerStill) {
    view.tmrGamQueryInterval = 0; // QueryTime=abc reads as 0
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("Q3", kMatch)) << sim.Output();
    StartQuery(sim.Port());
    EXPECT_TRUE(cycle.IsRunning());
    EXPECT_FALSE(runner.Timer().isActive());
}

TEST_F(QueryRunnerTest, SilentServerStopsTheQuery) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("Q3", "silence\n")) << sim.Output();
    StartQuery(sim.Port());
    ASSERT_TRUE(cycle.IsRunning());
    ASSERT_TRUE(WaitUntil([&] { return !cycle.IsRunning(); }));
    EXPECT_EQ(host.logs, std::vector<std::string>{"Gameserver is not responding. Aborting query."});
    EXPECT_EQ(view.lblQueryStatusCaption, "OFFLINE");
    EXPECT_FALSE(runner.Timer().isActive());
}

TEST_F(QueryRunnerTest, ScriptedMatchMovesOn) {
    settings.Profiles.Entries[0].Advanced = 1; // keep the server's time text
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("Q3", std::string(kMatch) + "time 5:00\nat 0.3 score Alice 9\nat 0.3 time INTERMISSION\n"
                                                      "at 0.3 leave Bob\n"))
        << sim.Output();
    StartQuery(sim.Port());
    ASSERT_TRUE(WaitForLabel("ONLINE - Q3"));
    EXPECT_TRUE(WaitUntil([&] {
        return state.Status.ScoreTime == "INTERMISSION" && state.Players[1].Score == 9 && state.Status.NumPlayers == 1;
    })) << state.Status.ScoreTime;
}

TEST_F(QueryRunnerTest, DatagramsFromAnotherPortAreDropped) {
    QUdpSocket server;
    QUdpSocket spoofer;
    ASSERT_TRUE(server.bind(QHostAddress::LocalHost, 0));
    ASSERT_TRUE(spoofer.bind(QHostAddress::LocalHost, 0));
    StartQuery(server.localPort());
    ASSERT_TRUE(WaitUntil([&] { return server.hasPendingDatagrams(); }));
    const QHostAddress client(QHostAddress::LocalHost);
    const auto reply = [](const char* name) {
        return QByteArray("\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32c\\sv_hostname\\") + name + "\n";
    };
    spoofer.writeDatagram(reply("Spoof"), client, runner.LocalPort());
    server.writeDatagram(reply("Real"), client, runner.LocalPort());
    ASSERT_TRUE(WaitForLabel("ONLINE - Q3"));
    testsupport::ProcessPendingEvents();
    EXPECT_EQ(state.Status.HostName, "Real");
    EXPECT_EQ(host.q3Infos, 1);
}

} // namespace
} // namespace tallybot::query
