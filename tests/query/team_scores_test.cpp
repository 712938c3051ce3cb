// Team scores on servers that report them (Advanced 1) and on servers that do not (Advanced 0),
// with the operator's correction.

#include "query/parsers.h"
#include "query/team_scores.h"

#include <string>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

// A Q3 reply whose two players are red and blue, with the given player and server scores.
std::string Reply(int redPlayer, int bluePlayer, int scoreRed = 0, int scoreBlue = 0) {
    return "\xFF\xFF\xFF\xFFstatusResponse\n\\g_gametype\\4\\score_red\\" + std::to_string(scoreRed) +
           "\\score_blue\\" + std::to_string(scoreBlue) + "\\players_red\\1\\players_blue\\2\n" +
           std::to_string(redPlayer) + " 50 \"Red\"\n" + std::to_string(bluePlayer) + " 60 \"Blue\"\n";
}

profiles::GameProfile Profile(int advanced, int scoring = 0) {
    profiles::GameProfile p;
    p.Advanced = advanced;
    p.AutoTeams = 1;
    p.Scoring = scoring;
    return p;
}

std::pair<int, int> After(GameState& st, const std::string& reply, const profiles::GameProfile& profile) {
    ParseEngineReply(kEngineQ3, reply, st, profile);
    return {st.TeamScoreRed, st.TeamScoreBlue};
}

using Pair = std::pair<int, int>;

TEST(TeamScoresTest, ReportingServerIsFollowedAndOverridesCorrections) {
    GameState st;
    EXPECT_EQ(After(st, Reply(10, 7, 2, 1), Profile(1)), Pair(2, 1));
    CorrectTeamScores(st, 3, 1);
    EXPECT_EQ(Pair(st.TeamScoreRed, st.TeamScoreBlue), Pair(3, 1));
    EXPECT_EQ(After(st, Reply(10, 7, 2, 1), Profile(1)), Pair(2, 1));
}

TEST(TeamScoresTest, SummedScoresKeepTheCorrectionUntilANewMatch) {
    GameState st;
    EXPECT_EQ(After(st, Reply(10, 7), Profile(0)), Pair(10, 7));
    CorrectTeamScores(st, 12, 5);
    EXPECT_EQ(After(st, Reply(10, 7), Profile(0)), Pair(12, 5));
    EXPECT_EQ(After(st, Reply(13, 7), Profile(0)), Pair(15, 5));
    EXPECT_EQ(After(st, Reply(0, 0), Profile(0)), Pair(0, 0)); // back to zero: a new match
    EXPECT_EQ(After(st, Reply(1, 0), Profile(0)), Pair(1, 0));
    // A correction at the start of a match survives replies that still sum to zero.
    EXPECT_EQ(After(st, Reply(0, 0), Profile(0)), Pair(0, 0));
    CorrectTeamScores(st, 1, 0);
    EXPECT_EQ(After(st, Reply(0, 0), Profile(0)), Pair(1, 0));
    ResetTeamScores(st);
    EXPECT_EQ(After(st, Reply(0, 0), Profile(0)), Pair(0, 0));
}

TEST(TeamScoresTest, ScoringOneCreditsTheKeptFlag) {
    GameState st;
    After(st, Reply(4, 6), Profile(0, 1));
    st.Players[1].Flag = 9; // the red player's score at the last capture check
    st.Players[2].Flag = 2;
    EXPECT_EQ(After(st, Reply(4, 6), Profile(0, 1)), Pair(9, 6));
    CalcTeamScores(st, 0, 0, Profile(0, 1));
    EXPECT_EQ(st.Status.ScoreRed, 9);
    CalcTeamScores(st, 0, 0, Profile(0, 0));
    EXPECT_EQ(st.Status.ScoreRed, 4);
}

TEST(TeamScoresTest, CalcTeamScoresResetsOnEmptySumsOrOnRequest) {
    GameState st;
    CalcTeamScores(st, 0, 0, Profile(0));
    EXPECT_EQ(st.TeamScoreResets, 1);
    st.Status.NumPlayers = 1000; // more than the table holds: the rest is skipped
    st.Players[1] = PlayerStatus{5, 0, "a", 2, "", 0};
    CalcTeamScores(st, 0, 0, Profile(0));
    EXPECT_EQ(st.Status.ScoreBlue, 5);
    EXPECT_EQ(st.TeamScoreResets, 1);
    CalcTeamScores(st, -1, 0, Profile(0));
    EXPECT_EQ(st.TeamScoreResets, 2);
}

} // namespace
} // namespace tallybot::query
