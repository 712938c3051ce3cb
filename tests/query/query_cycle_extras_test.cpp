// The query cycle with the [Extras] switches: the A2S probe, challenge and split replies through
// the cycle, IPv6 server fields, and the classic behaviour of the same input with the switches off.

#include "app/app_settings.h"
#include "query/a2s_exchange.h"
#include "query/query_cycle.h"
#include "query/server_address.h"
#include "tests/support/reply_fixture.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::string_literals;
using testsupport::ReadReplyFixture;

struct Socket : QuerySocket {
    void SetRemoteHost(const std::string& address) override { host = address; }
    void SetRemotePort(long p) override { port = p; }
    void SendData(std::string_view datagram) override { sent.emplace_back(datagram); }
    std::string host;
    long port = 0;
    std::vector<std::string> sent;
};

struct Host : QueryHost {
    void ParseReply(int engineId, std::string_view reply) override {
        parsed.push_back(std::to_string(engineId) + ":" + std::string(reply));
    }
    void ResetTeamScores() override {}
    void HandleQ3Info(std::string_view) override {}
    void RefreshDisplay() override {}
    void CalcCappedPlayer(int, int) override {}
    void SelectProfile() override {}
    void RefreshControls() override {}
    void ShowMessage(const std::string& text) override { messages.push_back(text); }
    void Log(const std::string&, const std::string& procedure, long, const std::string& message, bool) override {
        logs.push_back(procedure + ": " + message);
    }
    std::vector<std::string> parsed, messages, logs;
};

class QueryCycleExtrasTest : public ::testing::Test {
protected:
    QueryCycleExtrasTest() { cycle.Attach(&socket, nullptr); }
    void Start(const std::string& field) {
        view.cmbGamServerText = field;
        cycle.cmdGamQuery_Click();
    }
    void Reply(const std::string& datagram) { cycle.sckGamServ_DataArrival(datagram, {}); }

    QueryView view;
    GameState state;
    app::AppSettings settings;
    Host host;
    Socket socket;
    QueryCycle cycle{view, state, settings, host};
};

TEST_F(QueryCycleExtrasTest, ProbeRoundAddsTheA2SRequestOnlyWithTheSwitch) {
    Start("1.2.3.4:27015");
    EXPECT_EQ(socket.sent.size(), 17u);
    cycle.cmdGamQuery_Click();
    socket.sent.clear();
    settings.Extras.A2SQuery = 1;
    Start("1.2.3.4:27015");
    ASSERT_EQ(socket.sent.size(), 18u);
    EXPECT_EQ(socket.sent.back(), BuildA2SQuery(0, "\xFF\xFF\xFF\xFF"s));
}

TEST_F(QueryCycleExtrasTest, ChallengeThenRepliesThroughTheCycle) {
    settings.Extras.A2SQuery = 1;
    Start("1.2.3.4:27015");
    socket.sent.clear();

    Reply(ReadReplyFixture("a2s/challenge.bin"));
    EXPECT_EQ(state.EngineId, kEngineA2S);
    EXPECT_EQ(view.lblQueryStatusCaption, "ONLINE - A2S");
    const std::string challenge = "\x4B\xA1\x40\x07"s;
    EXPECT_EQ(socket.sent, std::vector<std::string>{BuildA2SQuery(0, challenge)});
    EXPECT_TRUE(host.parsed.empty());

    Reply(ReadReplyFixture("a2s/info.bin"));
    for (const char* part : {"a2s/rules_split1.bin", "a2s/rules_split0.bin", "a2s/rules_split2.bin"})
        Reply(ReadReplyFixture(part));
    EXPECT_EQ(host.parsed, (std::vector<std::string>{"18:" + ReadReplyFixture("a2s/info.bin"),
                                                     "18:" + ReadReplyFixture("a2s/rules.bin")}));

    // Rounds rotate like Half-Life's, a third of the query time apart, with the challenge held.
    socket.sent.clear();
    state.QueryStep = 0;
    for (int i = 0; i < 3; ++i)
        cycle.tmrGamQuery_Timer();
    EXPECT_EQ(view.tmrGamQueryInterval, 333);
    EXPECT_EQ(socket.sent, (std::vector<std::string>{BuildA2SQuery(0, challenge), BuildA2SQuery(1, challenge),
                                                     BuildA2SQuery(2, challenge)}));
}

TEST_F(QueryCycleExtrasTest, WithoutTheSwitchAChallengeIsTheClassicPendingState) {
    Start("1.2.3.4:27015");
    socket.sent.clear();
    Reply(ReadReplyFixture("a2s/challenge.bin"));
    EXPECT_EQ(state.EngineId, kEnginePending);
    EXPECT_EQ(view.lblQueryStatusCaption, "ONLINE - ");
    EXPECT_TRUE(socket.sent.empty());
}

struct FieldCase {
    std::string field;
    int ipv6;
    std::string fieldAfter, host;
    long port;
    std::string message;
};

class Ipv6FieldTest : public QueryCycleExtrasTest, public ::testing::WithParamInterface<FieldCase> {};

TEST_P(Ipv6FieldTest, StartsOrRefuses) {
    const FieldCase& c = GetParam();
    settings.Extras.IPv6 = c.ipv6;
    Start(c.field);
    EXPECT_EQ(view.cmbGamServerText, c.fieldAfter);
    EXPECT_EQ(socket.host, c.host);
    EXPECT_EQ(socket.port, c.port);
    EXPECT_EQ(host.messages, c.message.empty() ? std::vector<std::string>{} : std::vector<std::string>{c.message});
    EXPECT_EQ(cycle.IsRunning(), c.message.empty());
}

const std::string kBoth = "You have to enter both, an address and a port for the new server!";

INSTANTIATE_TEST_SUITE_P(
    Fields, Ipv6FieldTest,
    ::testing::Values(FieldCase{"[::1]:28000", 1, "[::1]:28000", "::1", 28000, ""},
                      FieldCase{"::1", 1, "[::1]:27960", "::1", 27960, ""},
                      FieldCase{"[2001:db8::7]", 1, "[2001:db8::7]:27960", "2001:db8::7", 27960, ""},
                      FieldCase{"[fe80::1%eth0]:5", 1, "[fe80::1%eth0]:5", "fe80::1%eth0", 5, ""},
                      FieldCase{"[::ffff:10.0.0.1]:7", 1, "[::ffff:10.0.0.1]:7", "::ffff:10.0.0.1", 7, ""},
                      FieldCase{"[::1]:27x", 1, "[::1]:27x", "", 0, "The specified port must be numerical!"},
                      FieldCase{"[::1]:", 1, "[::1]:", "", 0, kBoth},
                      FieldCase{"[host]:1", 1, "[host]:1", "", 0, "The IPv6 address entered is not valid!"},
                      FieldCase{"1.2.3.4:27960", 1, "1.2.3.4:27960", "1.2.3.4", 27960, ""},
                      // the classic check with the switch off
                      FieldCase{"::1", 0, "::1", "", 0, kBoth},
                      FieldCase{"[::1]:28000", 0, "[::1]:28000", "", 0, kBoth}));

const std::string kQ3Reply = "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32 linux\\mapname\\q3dm17\n"s;

// QueryRetry: the tenth silent round leaves the query running and probes with growing pauses (the
// timer's interval) until the server answers; every step says why.
TEST_F(QueryCycleExtrasTest, SilentServerIsProbedWithGrowingPausesUntilItAnswers) {
    settings.Extras.QueryRetry = 1;
    Start("1.2.3.4:27960");
    Reply(kQ3Reply);
    for (int round = 1; round <= 10; ++round)
        cycle.tmrGamQuery_Timer();
    EXPECT_EQ(view.lblQueryStatusCaption, "NO REPLY - NEXT PROBE IN 30 s");
    EXPECT_EQ(view.tmrGamQueryInterval, 30000);
    std::vector<int> pauses;
    for (int probe = 1; probe <= 6; ++probe) {
        socket.sent.clear();
        cycle.tmrGamQuery_Timer();
        EXPECT_EQ(socket.sent, std::vector<std::string>{"\xFF\xFF\xFF\xFFgetstatus"s});
        pauses.push_back(view.tmrGamQueryInterval);
    }
    EXPECT_EQ(pauses, (std::vector<int>{60000, 120000, 240000, 480000, 600000, 600000}));
    EXPECT_EQ(view.lblQueryStatusCaption, "NO REPLY - PROBING, NEXT IN 600 s");
    EXPECT_TRUE(cycle.IsRunning());
    Reply(kQ3Reply);
    EXPECT_EQ(view.lblQueryStatusCaption, "ONLINE - Q3");
    EXPECT_EQ(view.tmrGamQueryInterval, 1000);
    EXPECT_FALSE(cycle.Probing());
    ASSERT_EQ(host.logs.size(), 8u);
    EXPECT_EQ(host.logs[0], "tmrGamQuery_Timer: Gameserver is not responding. Next probe in 30 s.");
    EXPECT_EQ(host.logs[1], "tmrGamQuery_Timer: Gameserver is still not responding. Probing; next probe in 60 s.");
    EXPECT_EQ(host.logs[7], "sckGamServ_DataArrival: Gameserver answers again.");
    // Silent again: the pauses start over from 30 s.
    for (int round = 1; round <= 10; ++round)
        cycle.tmrGamQuery_Timer();
    EXPECT_EQ(view.tmrGamQueryInterval, 30000);
}

TEST_F(QueryCycleExtrasTest, StopsSayWhyWithQueryRetry) {
    settings.Extras.QueryRetry = 1;
    Start("1.2.3.4:27960");
    cycle.sckGamServ_Error(10054, "Connection reset by peer");
    cycle.sckGamServ_Error(10054, "Connection reset by peer");
    EXPECT_FALSE(cycle.IsRunning());
    EXPECT_EQ(host.logs.back(), "sckGamServ: Query stopped after a second socket error: Connection reset by peer.");
}

// ModernQuake3 off: an ioquake3 fork is still the Quake 2 fallback, and the log names the switch once.
TEST_F(QueryCycleExtrasTest, ForkWithoutTheSwitchNamesItOnce) {
    Start("1.2.3.4:27960");
    Reply(ReadReplyFixture("ioq3/openarena.bin"));
    Reply(ReadReplyFixture("ioq3/openarena.bin"));
    EXPECT_EQ(view.lblQueryStatusCaption, "ONLINE - Q2");
    EXPECT_EQ(host.logs, std::vector<std::string>{"sckGamServ_DataArrival: The game server runs ioq3 "
                                                  "1.36+u20221123.70d07d9+dfsg-1/Debian linux-x86_64 Jan  8 2023, an "
                                                  "ioquake3-family engine: set ModernQuake3=1 in [Extras] of "
                                                  "Tallybot.ini to query it as Quake 3."});
}

TEST(Ipv6LiteralTest, Forms) {
    for (const char* good : {"::", "::1", "1::", "2001:db8::1", "1:2:3:4:5:6:7:8", "::ffff:1.2.3.4", "fe80::1%eth0"})
        EXPECT_TRUE(IsIPv6Literal(good)) << good;
    for (const char* bad : {"", "1.2.3.4", "1:2:3:4:5:6:7:8:9", "1::2::3", "12345::", "::ffff:1.2.3.256", "::1%", "g::1", ":1",
                            "1:2:3:4:5:6:7::8", "::1.2.3"})
        EXPECT_FALSE(IsIPv6Literal(bad)) << bad;
}

} // namespace
} // namespace tallybot::query
