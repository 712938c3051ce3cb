#include "reporting/match_events.h"
#include "tests/reporting/reporting_fixture.h"

namespace tallybot::reporting::test {
namespace {

class MatchEventsTest : public ReportingTest {
protected:
    MatchEventsTest() {
        Profile().PostScoreChange = 1;
        Profile().Scoring = 2;
        Profile().ScorePerCap = 5;
    }
    void Check() { rep.Events.CalcCappedPlayer(Profile().ScorePerCap, state.MatchOver, false); }
    void Reply(const std::string& time, bool justDetected = false) {
        game.Status.ScoreTime = time;
        game.Status.TimeLimit = 20;
        game.Status.MapName = "q3wctf1";
        channel.lines.clear();
        rep.Events.HandleQ3Info(justDetected);
    }
    std::string CappedLine() { return channel.lines.size() == 3 ? channel.lines[1] : "<no post>"; }
};

TEST_F(MatchEventsTest, CapturingPlayerIsTheOneWhoseScoreRoseByScorePerCap) {
    AddPlayer("blue1", 10, 0, 2);
    const int kavik = AddPlayer("kavik", 10, 0, 1);
    state.PrevScoreRed = game.TeamScoreRed = 2;
    Check();
    EXPECT_TRUE(channel.lines.empty());

    game.TeamScoreRed = 3;
    game.Players[kavik].Score = 15;
    Check();
    EXPECT_EQ(CappedLine(), E + "Capped by" + I + " kavik");
    EXPECT_EQ(game.Players[kavik].Flag, 15);
    EXPECT_EQ(state.PrevScoreRed, 3);

    channel.lines.clear();
    game.TeamScoreRed = 4;
    game.Players[kavik].Score = 19;
    Check();
    EXPECT_EQ(CappedLine(), ""); // the score changed, nobody is named
}

TEST_F(MatchEventsTest, UnsetScorePerCapBecomes255InTheProfileHeldInMemory) {
    const int kavik = AddPlayer("kavik", 10, 0, 1);
    Profile().ScorePerCap = 0;
    game.TeamScoreRed = 1;
    game.Players[kavik].Score = 100;
    Check();
    EXPECT_EQ(Profile().ScorePerCap, 255);
    EXPECT_EQ(CappedLine(), "");
    EXPECT_EQ(settings.Profiles.Entries[0].ScorePerCap, 0);
}

TEST_F(MatchEventsTest, BothTeamsScoringNameTheFirstRiserInTableOrder) {
    const int red1 = AddPlayer("red1", 0, 0, 1);
    const int blue1 = AddPlayer("blue1", 0, 0, 2);
    const int red2 = AddPlayer("red2", 0, 0, 1);
    game.Players[red1].Score = 2;
    game.Players[blue1].Score = 5;
    game.Players[red2].Score = 5;
    game.TeamScoreRed = game.TeamScoreBlue = 1;
    Check();
    EXPECT_EQ(CappedLine(), E + "Capped by" + I + " blue1");
}

TEST_F(MatchEventsTest, FallingScorePostsNothingAndLowersThePreviousScore) {
    AddPlayer("kavik", 10, 0, 1);
    state.PrevScoreRed = 3;
    game.TeamScoreRed = 2;
    Check();
    EXPECT_TRUE(channel.lines.empty());
    EXPECT_EQ(state.PrevScoreRed, 2);
    game.TeamScoreRed = 3;
    Check();
    EXPECT_EQ(channel.lines.size(), 3u);
}

TEST_F(MatchEventsTest, ScoreChangeIsNotPostedForAJustDetectedEngineOrWithoutBothConnections) {
    AddPlayer("kavik", 10, 0, 1);
    game.TeamScoreRed = 1;
    rep.Events.CalcCappedPlayer(5, false, true);
    settings.ConnState = 1;
    game.TeamScoreRed = 2;
    Check();
    EXPECT_TRUE(channel.lines.empty());
    EXPECT_EQ(state.PrevScoreRed, 2);
    Profile().UseCustom = 1;
    Profile().Message = "%tsr%:%tsb%";
    settings.ConnState = 3;
    game.TeamScoreRed = 3;
    Check();
    EXPECT_EQ(channel.lines, std::vector<std::string>{"3:0"});
}

TEST_F(MatchEventsTest, TimeoutIsPostedOnceAndTheResumeOnce) {
    Reply("Timeout (red)");
    EXPECT_EQ(channel.lines, std::vector{E + "A " + I + "Timeout " + E + "has been called by" + I + " Red " + E +
                                         "(Map:" + I + " q3wctf1" + E + ")!"});
    Reply("Timeout (red)");
    EXPECT_TRUE(channel.lines.empty());
    Reply("10:00");
    EXPECT_EQ(channel.lines, std::vector{E + "The match has been " + I + "resumed" + E + "!"});
    Reply("9:59");
    EXPECT_TRUE(channel.lines.empty());
    Reply("TIMEOUT");
    EXPECT_EQ(channel.lines, std::vector{E + "A " + I + "Timeout " + E + "has been called " + E + "(Map:" + I +
                                         " q3wctf1" + E + ")!"});
}

TEST_F(MatchEventsTest, LateJoinIsSilentAndTheTimeLimitThenEndsTheMatch) {
    AddPlayer("kavik", 4, 10, 1);
    game.TeamScoreRed = 2;
    state.LastPostedRed = 1;
    Reply("12:00", true);
    EXPECT_TRUE(channel.lines.empty());
    EXPECT_FALSE(state.MatchOver);

    Reply("Timelimit hit");
    ASSERT_EQ(channel.lines.size(), 4u);
    EXPECT_EQ(channel.lines[0], E + "The match " + E + "has " + I + "ended" + E + "!");
    EXPECT_EQ(channel.lines[3], Red + "kavik " + E + "(S" + I + " 4" + E + ",P" + I + " 10" + E + ")");
    EXPECT_TRUE(state.MatchOver);
    EXPECT_EQ(game.Status.HostName, "");
    EXPECT_EQ(state.LastPostedRed, 0);
    EXPECT_EQ(state.PrevScoreRed, 0);

    Reply("Timelimit hit");
    EXPECT_TRUE(channel.lines.empty());
    Reply("25:00");
    EXPECT_TRUE(channel.lines.empty());
    EXPECT_TRUE(state.MatchOver);
    Reply("20:00");
    EXPECT_EQ(channel.lines, std::vector{E + "The " + I + "match " + E + "has " + I + "begun " + E + "(Map:" + I +
                                         " q3wctf1" + E + ")!"});
    EXPECT_FALSE(state.MatchOver);
}

TEST_F(MatchEventsTest, CustomTemplatesReplaceTheStartAndEndPosts) {
    Profile().UseCustom = 1;
    Profile().MessageStart = "go %map%";
    Profile().MessageEnd = "over";
    state.MatchOver = true;
    Reply("20:00");
    EXPECT_EQ(channel.lines, std::vector<std::string>{"go q3wctf1"});
    Reply("INTERMISSION");
    EXPECT_EQ(channel.lines, std::vector<std::string>{"over"});
}

TEST_F(MatchEventsTest, OvertimeIsPostedWhateverStatusPostingAndConnectionSay) {
    Profile().StatusPosting = 0;
    settings.ConnState = 0;
    game.TeamScoreRed = game.TeamScoreBlue = 3;
    state.PrevScoreRed = state.PrevScoreBlue = 3;
    state.MatchOver = true;
    Reply("OT 1:00");
    EXPECT_EQ(channel.lines, std::vector{I + "Sudden death overtime " + E + "(teams " + I + "tied at 3" + E + ")!"});
    EXPECT_FALSE(state.MatchOver);
}

TEST_F(MatchEventsTest, TimeTextThatIsNotANumberIsLoggedAndSkipped) {
    state.MatchOver = true;
    Reply("ab:cd");
    EXPECT_TRUE(state.MatchOver);
    EXPECT_NE(log.LogText().find("HandleQ3Info"), std::string::npos);
}

TEST_F(MatchEventsTest, IntervalPostRunsTheReportChosenByIntervalInfo) {
    AddPlayer("kavik", 4, 10, 1);
    Profile().Message = "custom";
    const std::string serverShort = E + "Hostname:" + I + " Zephra " + E + ", Map:" + I + " q3wctf1 " + E +
                                    ", Players:" + I + " 1" + E + " /" + I + " 16";
    const std::string teams = Red + "Red " + E + "(P" + I + " 10" + E + ")" + I + " 0 " + E + ":" + I + " 0 " + E +
                              "(P" + I + " 0" + E + ") " + Blue + "Blue";
    const struct {
        int info;
        std::size_t lines;
        std::string first;
    } cases[] = {
        {0, 3, E + "Host:" + I + " Zephra " + E + "(" + I + " 10.0.0.1:27960 " + E + ")"},
        {1, 1, serverShort},
        {2, 1, E + "Players: " + I + "kavik " + E + "(S" + I + " 4" + E + ",P" + I + " 10" + E + ") "},
        {3, 1, E + "Players: " + I + "kavik "},
        {4, 3, teams},
        {5, 3, teams},
        {6, 1, "custom"},
        {7, 0, ""},
        {-1, 0, ""},
    };
    Profile().IntervalTime = 2;
    for (const auto& c : cases) {
        Profile().IntervalInfo = c.info;
        channel.lines.clear();
        rep.Events.tmrIRCPost_Timer();
        EXPECT_TRUE(channel.lines.empty()) << c.info;
        rep.Events.tmrIRCPost_Timer();
        ASSERT_EQ(channel.lines.size(), c.lines) << c.info;
        if (c.lines > 0) {
            EXPECT_EQ(channel.lines[0], c.first) << c.info;
        }
        EXPECT_EQ(state.IntervalTicks, 0);
    }
    Profile().IntervalTime = 0;
    Profile().IntervalInfo = 6;
    channel.lines.clear();
    rep.Events.tmrIRCPost_Timer();
    rep.Events.tmrIRCPost_Timer();
    EXPECT_EQ(channel.lines.size(), 2u);
}

} // namespace
} // namespace tallybot::reporting::test
