// A real present-day Quake 3 engine server: Debian's openarena-server (ioquake3 engine), when it is
// installed, started here on 127.0.0.1 with two bots. With a new home's settings (ModernQuake3 on)
// it is detected as Q3 and read like one; with the switch off it is the Quake 2 fallback of the
// classic detection, and the log names the switch.
// Nothing is installed by the test: without the package every test is skipped (docs/games.md).

#include "app/settings_file.h"
#include "tests/query/query_runner_fixture.h"
#include "tests/support/qt_wait.h"
#include "tests/support/temp_folder.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QUdpSocket>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::chrono_literals;
using testsupport::WaitUntil;

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

class OpenArenaTest : public itest::QueryRunnerFixture {
protected:
    void SetUp() override {
        if (!QFileInfo::exists(kServerBinary)) GTEST_SKIP() << "openarena-server is not installed";
        ASSERT_TRUE(server.Start()) << server.Output();
        SetQueryTime(500);
    }
    void StartQuery() { QueryRunnerFixture::StartQuery(server.Port()); }

    OpenArenaServer server;
};

TEST_F(OpenArenaTest, DetectedAsQuake3WithANewHomesSettings) {
    tallybot::test::TempFolder home; // no Tallybot.ini: a new home
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
