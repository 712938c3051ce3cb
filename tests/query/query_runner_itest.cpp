// The Qt query adapter with the real parsers on real sockets. A datagram from any other port than
// the server's never reaches the parser, on IPv4 and on IPv6. A real present-day Quake 3 engine
// server, Debian's openarena-server (ioquake3 engine), when it is installed (nothing is installed
// by the test; without it those tests skip, docs/games.md), started here on 127.0.0.1 with two
// bots: with a new home's settings (ModernQuake3 on) it is detected as Q3 and read like one; with
// the switch off it is the Quake 2 fallback of the classic detection, and the log names the
// switch. What the adapter reads from each engine family is pinned end to end by
// tests/e2e/engine_family_itest.cpp.

#include "app/app_settings.h"
#include "app/settings_file.h"
#include "query/qt/query_runner.h"
#include "query/query_cycle.h"
#include "tests/support/parsing_query_host.h"
#include "tests/support/qt_wait.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <QFileInfo>
#include <QNetworkDatagram>
#include <QProcess>
#include <QTemporaryDir>
#include <QUdpSocket>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::chrono_literals;
using testsupport::WaitUntil;

struct RecordingHost : testsupport::ParsingQueryHost {
    using ParsingQueryHost::ParsingQueryHost;
    void ParseReply(int engineId, std::string_view reply) override {
        ParsingQueryHost::ParseReply(engineId, reply);
        maps.push_back(state.Status.MapName);
    }
    void Notice(const std::string&, const std::string& text) override { notices.push_back(text); }

    std::vector<std::string> maps; // the map after each parse: the server stayed readable
    std::vector<std::string> notices;
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

class ForeignDatagrams : public QueryRunnerFixture, public ::testing::WithParamInterface<bool> {};

TEST_P(ForeignDatagrams, AreDropped) {
    const bool ipv6 = GetParam();
    const QHostAddress loopback(ipv6 ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost);
    QUdpSocket server, stranger;
    if (!server.bind(loopback, 0) || !stranger.bind(loopback, 0)) GTEST_SKIP() << "no such loopback address here";
    // Every request is answered by the server and, first, by a stranger on another port.
    QObject::connect(&server, &QUdpSocket::readyRead, [&] {
        while (server.hasPendingDatagrams()) {
            const QNetworkDatagram request = server.receiveDatagram();
            if (!request.data().startsWith("\xFF\xFF\xFF\xFFgetstatus")) continue;
            const QByteArray reply = "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32c\\mapname\\";
            const auto port = static_cast<quint16>(request.senderPort());
            stranger.writeDatagram(reply + "foreign\n", request.senderAddress(), port);
            server.writeDatagram(reply + "q3dm17\n", request.senderAddress(), port);
        }
    });
    settings.Extras.IPv6 = ipv6;
    const std::string port = std::to_string(server.localPort());
    StartQuery(ipv6 ? "[::1]:" + port : "127.0.0.1:" + port);
    ASSERT_TRUE(WaitForLabel("ONLINE - Q3")) << view.lblQueryStatusCaption;
    ASSERT_TRUE(WaitUntil([&] { return host.maps.size() >= 4; }));
    testsupport::ProcessPendingEvents();
    EXPECT_EQ(std::count(host.maps.begin(), host.maps.end(), "q3dm17"), static_cast<long>(host.maps.size()));
}

INSTANTIATE_TEST_SUITE_P(Loopback, ForeignDatagrams, ::testing::Values(false, true),
                         [](const auto& info) { return std::string(info.param ? "IPv6" : "IPv4"); });

const char* const kServerBinary = "/usr/games/openarena-server";
constexpr auto kServerDeadline = 60s; // loading the paks and the bots' navigation takes a while

// The server as a child process with its own home folder and a free port.
class OpenArenaServer {
public:
    ~OpenArenaServer() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    bool Start() {
        QUdpSocket probe;
        if (!probe.bind(QHostAddress::LocalHost, 0)) return false;
        m_port = probe.localPort();
        probe.close();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("HOME", m_home.path());
        m_process.setProcessEnvironment(env);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(kServerBinary, {"+set", "dedicated",      "1",
                                        "+set", "net_ip",         "127.0.0.1",
                                        "+set", "net_port",       QString::number(m_port),
                                        "+set", "net_enabled",    "1",
                                        "+set", "sv_hostname",    "Tallybot OA Test",
                                        "+set", "bot_minplayers", "2",
                                        "+map", "oa_dm1"});
        // The map and the bots' navigation are loaded once this line is out.
        return WaitUntil(
            [&] {
                m_output += m_process.readAll().toStdString();
                return m_output.find("AAS initialized") != std::string::npos;
            },
            kServerDeadline);
    }

    quint16 Port() const { return m_port; }
    const std::string& Output() const { return m_output; }

private:
    QTemporaryDir m_home;
    QProcess m_process;
    quint16 m_port = 0;
    std::string m_output;
};

class OpenArenaTest : public QueryRunnerFixture {
protected:
    void SetUp() override {
        if (!QFileInfo::exists(kServerBinary)) GTEST_SKIP() << "openarena-server is not installed";
        ASSERT_TRUE(server.Start()) << server.Output();
        SetQueryTime(500);
    }
    void StartQuery() { QueryRunnerFixture::StartQuery("127.0.0.1:" + std::to_string(server.Port())); }

    OpenArenaServer server;
};

TEST_F(OpenArenaTest, DetectedAsQuake3WithANewHomesSettings) {
    test::TempFolder home; // no Tallybot.ini: a new home
    settings.AppPath = home.File("");
    app::LoadSettings(settings);
    settings.QueryTime = 500;
    StartQuery();
    ASSERT_TRUE(WaitUntil([&] { return view.lblQueryStatusCaption == "ONLINE - Q3"; }, 20s))
        << view.lblQueryStatusCaption << "\n"
        << server.Output();
    EXPECT_EQ(state.Status.HostName, "Tallybot OA Test");
    EXPECT_EQ(state.Status.MapName, "oa_dm1");
    EXPECT_EQ(state.Status.GameName, "baseoa");
    EXPECT_EQ(state.Status.Version.substr(0, 5), "ioq3 ");
    // The bots join within a few frames; their lines carry score, ping and name.
    EXPECT_TRUE(WaitUntil([&] { return state.Status.NumPlayers >= 1 && !state.Players[1].Name.empty(); }, 20s))
        << state.Status.NumPlayers;
    // And it keeps asking: more rounds, more replies, still running.
    const int before = static_cast<int>(host.maps.size());
    EXPECT_TRUE(WaitUntil([&] { return static_cast<int>(host.maps.size()) >= before + 3; }, 20s));
    EXPECT_TRUE(cycle.IsRunning());
    EXPECT_LE(cycle.MissedReplies(), 1);
}

TEST_F(OpenArenaTest, ClassicDetectionFallsBackToQuake2) {
    StartQuery();
    ASSERT_TRUE(WaitUntil([&] { return view.lblQueryStatusCaption == "ONLINE - Q2"; }, 20s))
        << view.lblQueryStatusCaption << "\n"
        << server.Output();
    // The Quake 2 parser reads "mapname" but knows no "sv_hostname".
    EXPECT_TRUE(WaitUntil([&] { return state.Status.MapName == "oa_dm1"; }, 20s)) << state.Status.MapName;
    EXPECT_EQ(state.Status.HostName, "");
    ASSERT_EQ(host.notices.size(), 1u);
    EXPECT_EQ(host.notices[0].rfind("The game server runs ioq3 ", 0), 0u) << host.notices[0];
    EXPECT_NE(host.notices[0].find(", an ioquake3-family engine: set ModernQuake3=1 in [Extras]"), std::string::npos);
}

} // namespace
} // namespace tallybot::query
