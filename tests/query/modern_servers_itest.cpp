// The [Extras] query additions end to end: the Qt adapter with the real parsers against
// tallybot-gamesim playing a Source server (challenge, split rules) and Quake 3 forks by their
// version strings, and a Quake 3 server on the IPv6 loopback address.

#include "tests/query/query_runner_fixture.h"
#include "tests/support/gamesim_process.h"
#include "tests/support/qt_wait.h"

#include <algorithm>
#include <string>
#include <vector>

#include <QNetworkDatagram>
#include <QUdpSocket>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using testsupport::GamesimProcess;
using testsupport::WaitUntil;

const char* const kMatch = "host Tally Source\nmap ctf_2fort\ngamename tf\ntimelimit 25\ncapturelimit 3\n"
                           "maxplayers 24\nplayer Scout red 7 40\nplayer Medic blue 2 60\n";

using ModernServersTest = itest::QueryRunnerFixture;

TEST_F(ModernServersTest, SourceServerAnsweredThroughChallengesAndSplitRules) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("A2S", kMatch)) << sim.Output();
    settings.Extras.A2SQuery = 1;
    StartQuery("127.0.0.1:" + std::to_string(sim.Port()));
    ASSERT_TRUE(WaitForLabel("ONLINE - A2S")) << view.lblQueryStatusCaption;
    // Host from the info reply, players from the player reply, limits from the split rules.
    EXPECT_TRUE(WaitUntil([&] {
        return state.Status.HostName == "Tally Source" && state.Players[2].Name == "Medic" &&
               state.Status.TimeLimit == 25 && state.Status.CaptureLimit == 3;
    })) << state.Status.HostName
        << "/" << state.Players[2].Name << "/" << int(state.Status.TimeLimit) << "/" << state.Status.CaptureLimit;
    EXPECT_EQ(state.Status.MapName, "ctf_2fort");
    EXPECT_EQ(state.Players[1].Score, 7);
    EXPECT_EQ(runner.Timer().interval(), 20);
}

TEST_F(ModernServersTest, SourceServerStaysSilentForTheClassicProbe) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("A2S", kMatch)) << sim.Output();
    StartQuery("127.0.0.1:" + std::to_string(sim.Port()));
    // Ten silent rounds stop the query, as for any server that does not answer.
    EXPECT_TRUE(WaitUntil([&] { return !cycle.IsRunning(); }));
    EXPECT_EQ(view.lblQueryStatusCaption, "OFFLINE");
}

struct ForkCase {
    const char* version;
    int modernQuake3;
    const char* label;
};

class ForkVersions : public ModernServersTest, public ::testing::WithParamInterface<ForkCase> {};

TEST_P(ForkVersions, DetectedByTheVersionString) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("Q3", std::string("version ") + GetParam().version + "\nmap oa_dm1\n")) << sim.Output();
    settings.Extras.ModernQuake3 = GetParam().modernQuake3;
    StartQuery("127.0.0.1:" + std::to_string(sim.Port()));
    ASSERT_TRUE(WaitForLabel(GetParam().label)) << view.lblQueryStatusCaption;
    EXPECT_TRUE(WaitUntil([&] { return state.Status.MapName == "oa_dm1"; })) << state.Status.MapName;
}

INSTANTIATE_TEST_SUITE_P(Forks, ForkVersions,
                         ::testing::Values(ForkCase{"ioq3 1.36_GIT_e5da13f1-2024-02-05 linux-x86_64", 1, "ONLINE - Q3"},
                                           ForkCase{"ioq3+oa 1.36_SVN1910M linux-i386", 1, "ONLINE - Q3"},
                                           ForkCase{"ioq3 1.35 urt 4.3.4 linux-x86_64", 1, "ONLINE - Q3"},
                                           ForkCase{"ioq3-urt 4.2.023 linux-i386", 1, "ONLINE - Q3"},
                                           ForkCase{"ioq3_r2231 linux-i386", 1, "ONLINE - Q3"},
                                           ForkCase{"CNQ3 1.53 linux-x64", 1, "ONLINE - Q3"},
                                           ForkCase{"Q3e 1.32e linux-x86_64", 0, "ONLINE - Q3"},
                                           ForkCase{"ioq3 1.36_GIT_e5da13f1-2024-02-05 linux-x86_64", 0,
                                                    "ONLINE - Q2"}));

// The simulator plays a Xonotic server (DarkPlaces): Quake 3 with the switch, the CoD fallback without.
TEST_F(ModernServersTest, XonoticServerIsReadAsQuake3WithTheSwitch) {
    GamesimProcess sim;
    ASSERT_TRUE(sim.Start("DP", "gamename Xonotic\ngametype ctf\nhost ^x4F0Xono ^7CTF\nmap xoylent\n"
                                "player Sarge red 12 48\nplayer Grism blue 7 30\n"))
        << sim.Output();
    settings.Extras.ModernQuake3 = 1;
    settings.Profiles.Entries[1].Engine = kEngineQ3; // a profile that takes teams from the reply
    settings.Profiles.Entries[1].AutoTeams = 1;
    settings.Profiles.CurrentProfile = 1;
    StartQuery("127.0.0.1:" + std::to_string(sim.Port()));
    ASSERT_TRUE(WaitForLabel("ONLINE - Q3")) << view.lblQueryStatusCaption;
    ASSERT_TRUE(WaitUntil([&] { return state.Status.HostName == "Xono CTF"; })) << state.Status.HostName;
    EXPECT_EQ(state.Status.GameName, "Xonotic");
    EXPECT_EQ(state.Status.GameType, "ctf");
    EXPECT_EQ(state.Players[1].Name, "Sarge");
    EXPECT_EQ(state.Players[2].Team, 2);
    runner.Click();
    settings.Extras.ModernQuake3 = 0;
    StartQuery("127.0.0.1:" + std::to_string(sim.Port()));
    EXPECT_TRUE(WaitForLabel("ONLINE - CoD")) << view.lblQueryStatusCaption;
}

TEST_F(ModernServersTest, Ipv6ServerAnswersOnlyFromItsOwnPort) {
    QUdpSocket server, stranger;
    if (!server.bind(QHostAddress(QHostAddress::LocalHostIPv6), 0) ||
        !stranger.bind(QHostAddress(QHostAddress::LocalHostIPv6), 0))
        GTEST_SKIP() << "no IPv6 loopback here";
    QObject::connect(&server, &QUdpSocket::readyRead, [&] {
        while (server.hasPendingDatagrams()) {
            const QNetworkDatagram request = server.receiveDatagram();
            if (!request.data().startsWith("\xFF\xFF\xFF\xFFgetstatus")) continue;
            const QByteArray reply = "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32c\\mapname\\q3dm17\n";
            const QByteArray foreign = "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32c\\mapname\\foreign\n";
            server.writeDatagram(reply, request.senderAddress(), static_cast<quint16>(request.senderPort()));
            stranger.writeDatagram(foreign, request.senderAddress(), static_cast<quint16>(request.senderPort()));
        }
    });
    settings.Extras.IPv6 = 1;
    StartQuery("::1");
    EXPECT_EQ(view.cmbGamServerText, "[::1]:27960");
    runner.Click();
    StartQuery("[::1]:" + std::to_string(server.localPort()));
    ASSERT_TRUE(WaitForLabel("ONLINE - Q3")) << view.lblQueryStatusCaption;
    // Several replies, each followed by the stranger's datagram, which never reaches the parser.
    ASSERT_TRUE(WaitUntil([&] { return host.maps.size() >= 4; }));
    testsupport::ProcessPendingEvents();
    EXPECT_EQ(std::count(host.maps.begin(), host.maps.end(), "q3dm17"), static_cast<long>(host.maps.size()));
}

} // namespace
} // namespace tallybot::query
