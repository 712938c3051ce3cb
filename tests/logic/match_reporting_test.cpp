// A reply's way from the query socket through the parser into match reporting and the channel,
// and the timers the logic arms around replies, profiles and channel commands.
#include "profiles/team_assignment.h"
#include "tests/logic/logic_fixture.h"

#include <filesystem>

namespace tallybot::app::test {
namespace {

using Posts = std::vector<std::string>;

// ET with teams assigned by hand: the team scores are the sums of the players' scores.
std::string EtProfile(const std::string& report) {
    return "[Game]\r\nEngine=11\r\n[AdvInfo]\r\nAdvanced=0\r\nAutoTeams=0\r\n"
           "[Posting]\r\nPostScoreChange=1\r\nStatusPosting=1\r\nInterval=0\r\n[Report]\r\n" +
           report;
}

std::string EtReply(int alice, int bob) {
    return "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\ET 2.60b linux-i386\\sv_hostname\\Oasis\\mapname\\oasis"
           "\\sv_maxclients\\20\\timelimit\\12\n" +
           std::to_string(alice) + " 40 \"Alice\"\n" + std::to_string(bob) + " 60 \"Bob\"\n";
}

// Q3 capture the flag: the server reports teams and team scores; interval posts on.
const char* const kCtfProfile = "[Game]\r\nEngine=2\r\n[AdvInfo]\r\nAdvanced=1\r\nAutoTeams=1\r\n"
                                "[Posting]\r\nPostScoreChange=1\r\nStatusPosting=1\r\nInterval=1\r\n"
                                "[Report]\r\nUseCustom=1\r\nMessage=%tsr%:%tsb%\r\n";

std::string Q3Reply(int red, int blue, const std::string& time) {
    return "\xFF\xFF\xFF\xFFstatusResponse\n\\version\\Q3 1.32c linux-i386\\mapname\\q3ctf1\\g_gametype\\4"
           "\\timelimit\\20\\score_time\\" +
           time + "\\score_red\\" + std::to_string(red) + "\\score_blue\\" + std::to_string(blue) +
           "\\players_red\\1\\players_blue\\2\n10 50 \"Alice\"\n5 70 \"Bob\"\n";
}

class MatchReportingTest : public LogicTest {
protected:
    // Profiles written to the home folder, IRC joined and the query running.
    void Connect(const std::vector<std::pair<std::string, std::string>>& profiles, const std::string& ini = IrcIni()) {
        std::filesystem::create_directories(home.File("Profiles"));
        for (const auto& [file, text] : profiles)
            WriteBytes(home.File("Profiles/" + file), text);
        Start(ini);
        logic->cmdIRCConnection_Click();
        RegisterIrc();
        logic->cmdGamQuery_Click();
        ASSERT_EQ(logic->Settings().ConnState, 3);
        transport.sent.clear();
    }

    void Reply(const std::string& datagram) {
        logic->Query().sckGamServ_DataArrival(datagram, {});
        logic->Sync();
    }

    // The channel lines sent since the last call, without command and line end.
    Posts TakePosts() {
        Posts posts;
        for (const std::string& line : transport.sent)
            if (line.starts_with("PRIVMSG #chan :")) posts.push_back(line.substr(15, line.size() - 17));
        transport.sent.clear();
        return posts;
    }

    bool TimerOn(MainTimer timer) const { return timers.Last(timer) && timers.Last(timer)->enabled; }
};

struct SummedScoreCase {
    const char* name;
    const char* report;
    const char* risePost;
};

class SummedScoreTest : public MatchReportingTest, public ::testing::WithParamInterface<SummedScoreCase> {};

// The ET parser resets the team scores on every reply; only a real rise may post, and only once.
TEST_P(SummedScoreTest, SameSumsPostNothingARisePostsOnceACorrectionNever) {
    Connect({{"ET.igp", EtProfile(GetParam().report)}});
    Reply(EtReply(20, 11));
    profiles::AssignmentLists lists = profiles::FillAssignmentLists(logic->Game()); // the dialog's steps
    profiles::AssignPlayers(logic->Game(), lists, 0, {0});                          // Alice red
    profiles::AssignAllPlayers(logic->Game(), lists, 1);                            // Bob blue
    Reply(EtReply(20, 11));
    TakePosts();

    Reply(EtReply(20, 11));
    Reply(EtReply(20, 11));
    EXPECT_EQ(TakePosts(), Posts{});
    Reply(EtReply(25, 11));
    Reply(EtReply(25, 11));
    EXPECT_EQ(TakePosts(), Posts{GetParam().risePost});
    ASSERT_FALSE(profiles::CorrectScore(logic->Game(), "30", "11", logic->ReportState().PrevScoreRed,
                                        logic->ReportState().PrevScoreBlue));
    Reply(EtReply(25, 11));
    Reply(EtReply(25, 11));
    EXPECT_EQ(TakePosts(), Posts{});
}

INSTANTIATE_TEST_SUITE_P(Reports, SummedScoreTest,
                         ::testing::Values(SummedScoreCase{"Custom", "UseCustom=1\r\nMessage=%tsr%:%tsb%\r\n", "25:11"},
                                           SummedScoreCase{"TeamsShort", "UseCustom=0\r\n",
                                                           "\x03"
                                                           "10Error : \x03"
                                                           "2Server does not support advanced info commands\x03"
                                                           "10!"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(MatchReportingTest, FirstReplyAfterAStartPostsNothingAndALaterRiseReachesTheChannel) {
    Connect({{"CTF.igp", kCtfProfile}});
    Reply(Q3Reply(3, 1, "12:00")); // a match joined late, in the reply that settles the engine
    Reply(Q3Reply(3, 1, "11:00"));
    EXPECT_EQ(TakePosts(), Posts{});
    Reply(Q3Reply(4, 1, "10:00"));
    Reply(Q3Reply(4, 1, "09:00"));
    EXPECT_EQ(TakePosts(), Posts{"4:1"});

    logic->cmdGamQuery_Click(); // stop and start again: the first reply is new again
    logic->cmdGamQuery_Click();
    Reply(Q3Reply(6, 1, "20:00"));
    EXPECT_EQ(TakePosts(), Posts{});
}

class NameColourTest : public MatchReportingTest, public ::testing::WithParamInterface<bool> {};

TEST_P(NameColourTest, GameColoursInNamesBecomeIrcColoursOnlyWithTheSwitch) {
    Connect({{"ET.igp", EtProfile("UseCustom=0\r\n")}},
            IrcIni() + "[Extras]\r\nGameColoursToIrc=" + (GetParam() ? "1" : "0") + "\r\n");
    std::string reply = EtReply(20, 11);
    Reply(reply.replace(reply.find("Alice"), 5, "^11337^7A"));
    EXPECT_EQ(logic->View().lvwPlayers.at(0).Name, "1337A"); // the window shows the text alone
    logic->mnuPostPlayersShort_Click();
    const std::string named = GetParam() ? "\x03"
                                           "041337\x03"
                                           "00A\x0F"
                                         : "1337A";
    EXPECT_EQ(TakePosts(), Posts{"\x03"
                                 "10Players: \x03"
                                 "2" +
                                 named + " Bob "});
}

INSTANTIATE_TEST_SUITE_P(Switch, NameColourTest, ::testing::Bool());

TEST_F(MatchReportingTest, IntervalTimerIsArmedByTheProfileChosenForTheServerAndFromTheMenu) {
    Connect({{"CTF.igp", kCtfProfile}, {"Quiet.igp", "[Game]\r\nEngine=2\r\n[Posting]\r\nInterval=0\r\n"}});
    EXPECT_FALSE(TimerOn(MainTimer::IRCPost)); // no profile yet
    Reply(Q3Reply(0, 0, "20:00"));
    ASSERT_EQ(logic->Settings().Profiles.CurrentProfile, 1);
    EXPECT_TRUE(TimerOn(MainTimer::IRCPost));
    logic->mnuProfileSel_Click(2);
    EXPECT_FALSE(TimerOn(MainTimer::IRCPost));
    logic->mnuProfileSel_Click(1);
    EXPECT_TRUE(TimerOn(MainTimer::IRCPost));
    logic->cmdIRCConnection_Click(); // IRC gone: nothing to post to
    EXPECT_FALSE(TimerOn(MainTimer::IRCPost));
}

TEST_F(MatchReportingTest, SendDelayRunsFromStartUpAndAgainAfterEachCommandForItsSeconds) {
    Connect({}, IrcIni() + "[Autopost]\r\nSendDelay=2\r\n");
    const auto command = [&](const std::string& text) {
        logic->Irc().OnServerData(":carol!c@h PRIVMSG #chan :" + text + "\r\n");
    };
    EXPECT_TRUE(TimerOn(MainTimer::IRCSendDelay));
    logic->tmrIRCSendDelay_Timer();
    EXPECT_TRUE(TimerOn(MainTimer::IRCSendDelay));
    logic->tmrIRCSendDelay_Timer();
    EXPECT_FALSE(TimerOn(MainTimer::IRCSendDelay));

    command("!nothing"); // unknown, still a request
    EXPECT_TRUE(TimerOn(MainTimer::IRCSendDelay));
    command("!info"); // refused: the delay runs on, not extended
    logic->tmrIRCSendDelay_Timer();
    logic->tmrIRCSendDelay_Timer();
    EXPECT_FALSE(TimerOn(MainTimer::IRCSendDelay));
    EXPECT_EQ(TakePosts(), Posts{});
    command("!info");
    EXPECT_EQ(TakePosts().size(), 3u);
    EXPECT_TRUE(TimerOn(MainTimer::IRCSendDelay));
}

} // namespace
} // namespace tallybot::app::test
