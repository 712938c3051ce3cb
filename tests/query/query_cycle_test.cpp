// The query cycle against a recording socket and host: view states, address checks, the rounds'
// datagrams, time-out, GameSpy assembly and the game data log.

#include "app/app_settings.h"
#include "base/vb_convert.h"
#include "query/query_cycle.h"
#include "query/query_cycle_packets.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::string_literals;

struct RecordingSocket : QuerySocket {
    void SetRemoteHost(const std::string& address) override { host = address; }
    void SetRemotePort(long p) override { port = p; }
    void SendData(std::string_view datagram) override {
        if (refuse) throw vb::VbError(10065, "No route to host");
        sent.emplace_back(datagram);
    }
    std::string host;
    long port = 0;
    bool refuse = false;
    std::vector<std::string> sent;
};

struct RecordingHost : QueryHost {
    void ParseReply(int engineId, std::string_view reply) override {
        calls.push_back("parse " + std::to_string(engineId) + " " + std::string(reply));
    }
    void ResetTeamScores() override { calls.push_back("reset"); }
    void HandleQ3Info(std::string_view) override { calls.push_back("q3info"); }
    void RefreshDisplay() override { calls.push_back("refresh"); }
    void CalcCappedPlayer(int scorePerCap, int matchOver) override {
        calls.push_back("capped " + std::to_string(scorePerCap) + " " + std::to_string(matchOver));
    }
    void SelectProfile() override { calls.push_back("select"); }
    void RefreshControls() override {}
    void ShowMessage(const std::string& text) override { messages.push_back(text); }
    void Log(const std::string& module, const std::string& procedure, long number, const std::string& message,
             bool) override {
        logs.push_back(module + ";" + procedure + ";" + std::to_string(number) + ";" + message);
    }
    std::vector<std::string> calls, messages, logs;
};

struct ManualResolver : NameResolver {
    void AddrByName(const std::string& name, int t) override {
        asked = name;
        ticket = t;
    }
    std::string asked;
    int ticket = 0;
};

const std::string kQ3Reply = "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32 linux\\mapname\\q3dm17\n"s;

class QueryCycleTest : public ::testing::Test {
protected:
    QueryCycleTest() {
        cycle.Attach(&socket, &resolver);
        view.cmbGamServerText = "1.2.3.4:27960";
    }
    void Start(const std::string& field) {
        view.cmbGamServerText = field;
        cycle.cmdGamQuery_Click();
    }

    QueryView view;
    GameState state;
    app::AppSettings settings;
    RecordingHost host;
    RecordingSocket socket;
    ManualResolver resolver;
    QueryCycle cycle{view, state, settings, host};
};

TEST_F(QueryCycleTest, StartAndStopSetEveryControl) {
    settings.ConnState = 1; // IRC already up
    settings.Profiles.Entries[0].Interval = 1;
    Start("1.2.3.4");

    QueryView running;
    running.cmbGamServerText = "1.2.3.4:27960";
    running.cmbGamServerEnabled = false;
    running.cmdGamQueryCaption = "S&top";
    running.lblQueryStatusCaption = "CONNECTING";
    running.lblQueryStatusColour = 0x00FFFF;
    running.tmrGamQueryEnabled = true;
    running.tmrIRCPostEnabled = true;
    EXPECT_EQ(view, running);
    EXPECT_EQ(settings.ConnState, 3);
    EXPECT_EQ(socket.host, "1.2.3.4");
    EXPECT_EQ(socket.port, 27960);

    settings.Profiles.CurrentProfile = 2;
    view.cmdInfoToIRCEnabled = view.cmdAssignPlayersEnabled = view.cmdCorrectScoreEnabled = true;
    view.cmdProfilesCaption = "Profile: CTF";
    state.EngineId = kEngineQ3;
    state.QueryPortOffset = 1;
    state.Status.HostName = "host";
    cycle.cmdGamQuery_Click();

    QueryView stopped;
    stopped.cmbGamServerText = "1.2.3.4:27960";
    EXPECT_EQ(view, stopped);
    EXPECT_EQ(settings.ConnState, 1);
    EXPECT_EQ(settings.Profiles.CurrentProfile, 0);
    EXPECT_EQ(state.EngineId, 0);
    EXPECT_EQ(state.QueryPortOffset, 0);
    EXPECT_EQ(state.Status.HostName, "");
    EXPECT_EQ(state.Status.Version, "0");
    EXPECT_EQ(host.calls, std::vector<std::string>{"reset"});
}

struct AddressCase {
    std::string host, port;
    AddressCheck::Kind kind;
    std::string message;
};

TEST(ValidateAddress, MessagesAndResults) {
    const AddressCase cases[] = {
        {"", "27960", AddressCheck::Kind::Rejected,
         "You have to enter both, an address and a port for the new server!"},
        {"1.2.3.4", "", AddressCheck::Kind::Rejected,
         "You have to enter both, an address and a port for the new server!"},
        {"1.2.3.4", "27x", AddressCheck::Kind::Rejected, "The specified port must be numerical!"},
        {"1.2.3", "27960", AddressCheck::Kind::Rejected, "The IP address entered does not contain 4 sets of numbers!"},
        {"1.2.3.4.5", "1", AddressCheck::Kind::Rejected, "The IP address entered does not contain 4 sets of numbers!"},
        {"1.2.300.4", "1", AddressCheck::Kind::Rejected, "The 3. value has to be between 0 and 255!"},
        {"256.2.300.4", "1", AddressCheck::Kind::Rejected, "The 1. value has to be between 0 and 255!"},
        {"1.2.3.", "1", AddressCheck::Kind::Rejected, "The 4. value has to be between 0 and 255!"},
        {"q3.example.org", "27960", AddressCheck::Kind::HostName, ""},
        {"10.0.0.255", "27960", AddressCheck::Kind::Address, ""},
    };
    for (const auto& c : cases) {
        std::string shown;
        const AddressCheck check = ValidateAddress(c.host, c.port, [&](const std::string& m) { shown = m; });
        EXPECT_EQ(check.kind, c.kind) << c.host << ":" << c.port;
        EXPECT_EQ(shown, c.message) << c.host << ":" << c.port;
        if (c.kind != AddressCheck::Kind::Rejected) {
            EXPECT_EQ(check.text, c.host);
        }
    }
}

TEST_F(QueryCycleTest, RejectedAddressKeepsTheQueryStopped) {
    Start("1.2.3:27960");
    EXPECT_FALSE(cycle.IsRunning());
    EXPECT_EQ(host.messages, std::vector<std::string>{"The IP address entered does not contain 4 sets of numbers!"});
    EXPECT_TRUE(socket.sent.empty());
}

TEST_F(QueryCycleTest, HostNameStartsOnlyOnceResolved) {
    Start("q3.example.org:27960");
    EXPECT_EQ(resolver.asked, "q3.example.org");
    EXPECT_FALSE(cycle.IsRunning());
    cycle.AddressResolved(resolver.ticket, "");
    EXPECT_FALSE(cycle.IsRunning());
    EXPECT_EQ(host.messages, std::vector<std::string>{"The server name q3.example.org could not be resolved!"});

    cycle.cmdGamQuery_Click();
    cycle.AddressResolved(resolver.ticket - 1, "9.9.9.9"); // stale answer
    EXPECT_FALSE(cycle.IsRunning());
    cycle.AddressResolved(resolver.ticket, "5.6.7.8");
    EXPECT_TRUE(cycle.IsRunning());
    EXPECT_EQ(socket.host, "5.6.7.8");
    EXPECT_EQ(socket.sent.size(), 17u);
}

TEST_F(QueryCycleTest, ProbeRoundSendsEveryEngineOnce) {
    state.QueryStep = 1;
    Start("1.2.3.4:27960");
    const std::string ff = "\xFF\xFF\xFF\xFF";
    const std::vector<std::string> expected = {
        ff + "status",
        ff + "getstatus",
        "\\status\\",
        ff + "players",
        ff + "getstatus",
        ff + "getstatus",
        ff + "getstatus",
        ff + "getstatus",
        "\x78\x00\x00\x00\x02"s,
        ff + "\x02getstatus",
        ff + "getstatus",
        ff + "getstatus",
        ff + "getstatus",
        "\\status\\",
        ff + "getstatus",
        "\x7F\xFF\xFF\xFFstatus",
        "\xFF\xFFgetinfo\x00\x00\x00\x00"s,
    };
    EXPECT_EQ(socket.sent, expected);
    EXPECT_EQ(state.QueryStep, 1);
}

TEST_F(QueryCycleTest, PendingDetectionAsksThePortPlusOne) {
    Start("1.2.3.4:7777");
    socket.sent.clear();
    state.EngineId = kEnginePending;
    state.QueryPortOffset = 1;
    cycle.tmrGamQuery_Timer();
    EXPECT_EQ(socket.port, 7778);
    EXPECT_EQ(socket.sent, (std::vector<std::string>{"\\status\\", "\x78\x00\x00\x00\x00"s}));
}

TEST_F(QueryCycleTest, ThreeStepEnginesRotateAtAThirdOfTheInterval) {
    Start("1.2.3.4:27015");
    socket.sent.clear();
    state.EngineId = kEngineHL;
    for (int i = 0; i < 4; ++i)
        cycle.tmrGamQuery_Timer();
    EXPECT_EQ(view.tmrGamQueryInterval, 333);
    const std::string ff = "\xFF\xFF\xFF\xFF";
    EXPECT_EQ(socket.sent, (std::vector<std::string>{ff + "info", ff + "players", ff + "rules", ff + "info"}));

    state.EngineId = kEngineQ3;
    cycle.tmrGamQuery_Timer();
    EXPECT_EQ(view.tmrGamQueryInterval, 1000);
}

TEST_F(QueryCycleTest, TenthSilentRoundStopsAndAReplyResetsTheCount) {
    Start("1.2.3.4:27960"); // round 1
    for (int i = 2; i <= 9; ++i)
        cycle.tmrGamQuery_Timer();
    cycle.sckGamServ_DataArrival("\377\377\377\377disconnect", {});
    for (int i = 1; i <= 9; ++i)
        cycle.tmrGamQuery_Timer();
    EXPECT_TRUE(cycle.IsRunning());
    EXPECT_TRUE(host.logs.empty());
    socket.sent.clear();
    cycle.tmrGamQuery_Timer();
    EXPECT_FALSE(cycle.IsRunning());
    EXPECT_EQ(host.logs,
              std::vector<std::string>{"frmMain;tmrGamQuery_Timer;0;Gameserver is not responding. Aborting query."});
    EXPECT_EQ(socket.sent.size(), 17u); // the round still runs to its end
}

TEST_F(QueryCycleTest, SecondRoundErrorStopsAndReconnectStartsAfresh) {
    settings.Reconnect = 1;
    socket.refuse = true;
    Start("1.2.3.4:27960");
    EXPECT_TRUE(host.logs.empty()); // with Reconnect 1 nothing is reported
    EXPECT_TRUE(cycle.IsRunning());
    EXPECT_EQ(host.calls.size(), 8u); // a stop (and a fresh start) for every second of the 17 refusals
    settings.Reconnect = 0;
    socket.refuse = false;
    cycle.cmdGamQuery_Click();
    socket.refuse = true;
    host.calls.clear();
    Start("1.2.3.4:27960");
    EXPECT_FALSE(cycle.IsRunning());
    // The stop clears the flag and the round goes on, so the next refusal is reported once more.
    EXPECT_EQ(host.logs, std::vector<std::string>(2, "frmMain;tmrGamQuery_Timer;10065;No route to host"));
}

TEST_F(QueryCycleTest, SocketErrorIsReportedOnceThenStops) {
    Start("1.2.3.4:27960");
    cycle.sckGamServ_Error(10054, "Connection reset by peer");
    EXPECT_TRUE(cycle.IsRunning());
    cycle.sckGamServ_Error(10054, "Connection reset by peer");
    EXPECT_FALSE(cycle.IsRunning());
    EXPECT_FALSE(cycle.SocketErrorSeen());
    EXPECT_EQ(host.logs, std::vector<std::string>{"frmMain;sckGamServ;10054;Connection reset by peer"});
}

TEST_F(QueryCycleTest, DetectionShowsTheEngineAndPicksTheProfile) {
    Start("1.2.3.4:27960");
    cycle.sckGamServ_DataArrival(kQ3Reply, {});
    EXPECT_EQ(view.lblQueryStatusCaption, "ONLINE - Q3");
    EXPECT_EQ(view.lblQueryStatusColour, 0x00C000u);
    EXPECT_TRUE(view.cmdCorrectScoreEnabled);
    EXPECT_TRUE(view.cmdAssignPlayersEnabled);
    EXPECT_EQ(host.calls, (std::vector<std::string>{"parse 2 " + kQ3Reply, "q3info", "select"}));
}

TEST_F(QueryCycleTest, GameSpyRepliesAreAssembledFromTheLastTwoDatagrams) {
    Start("1.2.3.4:7777");
    state.EngineId = kEngineUT;
    host.calls.clear();
    settings.Profiles.Entries[0].ScorePerCap = 7;
    cycle.sckGamServ_DataArrival("\\hostname\\A", {});
    cycle.sckGamServ_DataArrival("\\mapname\\B", {});
    cycle.sckGamServ_DataArrival("\\numplayers\\0\\final\\", {});
    EXPECT_EQ(cycle.ReplyBuffer(), "");
    EXPECT_EQ(host.calls,
              (std::vector<std::string>{"refresh", "capped 7 0", "refresh", "capped 7 0",
                                        "parse 3 \\mapname\\B\\numplayers\\0\\final\\", "refresh", "capped 7 0"}));
}

TEST(GameDataLogName, FromTheServerField) {
    const LocalDateTime day{2026, 3, 7, 9, 5, 1};
    EXPECT_EQ(GameLogFileName("1.2.3.4:27960", false, day), "1.2.3.4-27960.log");
    EXPECT_EQ(GameLogFileName("1.2.3.4:27960", true, day), "1.2.3.4 2026-03-07.log");
    EXPECT_EQ(DateTimeText(day), "2026-03-07 09:05:01");
}

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST_F(QueryCycleTest, LateReplyAfterStopClosesTheDataLog) {
    const auto folder = std::filesystem::temp_directory_path() / ("qc_log_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    settings.DoLog = 1;
    settings.GameLogTimeStamp = 1;
    settings.LogInclDate = 0;
    settings.LogFolder = folder.string() + "/";
    const auto file = folder / "1.2.3.4-27960.log";
    std::ofstream(file) << "older run\r\n";

    Start("1.2.3.4:27960");
    cycle.sckGamServ_DataArrival(kQ3Reply, {2026, 11, 21, 23, 59, 50});
    cycle.sckGamServ_DataArrival("second", {2026, 11, 21, 23, 59, 51});
    cycle.cmdGamQuery_Click();
    EXPECT_TRUE(cycle.DataLog().IsOpen());
    host.calls.clear();
    cycle.sckGamServ_DataArrival("late", {2026, 11, 22, 0, 0, 3});
    EXPECT_FALSE(cycle.DataLog().IsOpen());
    EXPECT_TRUE(host.calls.empty());
    cycle.sckGamServ_DataArrival("later still", {2026, 11, 22, 0, 0, 4});

    EXPECT_EQ(ReadFile(file), "Started Game Server Query @ 2026-11-21 23:59:50\r\n" + kQ3Reply +
                                  "\r\nsecond\r\nStopped Game Server Query @ 2026-11-22 00:00:03\r\n");
    std::filesystem::remove_all(folder);
}

TEST_F(QueryCycleTest, DatedDataLogIsAppended) {
    const auto folder = std::filesystem::temp_directory_path() / ("qc_dlog_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    settings.DoLog = 1;
    settings.LogFolder = folder.string() + "/";
    const auto file = folder / "1.2.3.4 2026-11-21.log";
    std::ofstream(file) << "older run\r\n";
    Start("1.2.3.4:27960");
    cycle.sckGamServ_DataArrival(kQ3Reply, {2026, 11, 21, 23, 59, 50});
    EXPECT_EQ(ReadFile(file), "older run\r\n" + kQ3Reply + "\r\n");
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace tallybot::query
