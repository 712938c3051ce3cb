// Manual team assignment and score correction on the live game state.

#include "base/vb_convert.h"
#include "profiles/team_assignment.h"
#include "query/team_scores.h"
#include "tests/support/param_name.h"

#include <gtest/gtest.h>

namespace {

namespace profiles = tallybot::profiles;
using tallybot::query::GameState;
using Names = std::vector<std::string>;

GameState State(const std::vector<std::pair<std::string, int>>& players) {
    GameState s;
    int slot = 0;
    for (const auto& [name, team] : players) {
        ++slot;
        s.Players[slot].Name = name;
        s.Players[slot].Team = team;
    }
    s.Status.NumPlayers = slot;
    return s;
}

TEST(TeamAssignment, ListsFollowTheTeamsInTableOrder) {
    GameState s = State({{"ann", 0}, {"bob", 1}, {"cid", 2}, {"dan", 7}, {"eve", 1}});
    s.Players[6].Name = "beyond-count";
    const auto lists = profiles::FillAssignmentLists(s);
    EXPECT_EQ(lists.Players, (Names{"ann", "dan"}));
    EXPECT_EQ(lists.PlayTeam[0], (Names{"bob", "eve"}));
    EXPECT_EQ(lists.PlayTeam[1], (Names{"cid"}));
}

TEST(TeamAssignment, AssignThenRemoveRestoresNoTeam) {
    GameState s = State({{"ann", 0}, {"bob", 0}, {"cid", 0}});
    auto lists = profiles::FillAssignmentLists(s);
    profiles::AssignPlayers(s, lists, 0, {2, 0});
    EXPECT_EQ(lists.Players, (Names{"bob"}));
    EXPECT_EQ(lists.PlayTeam[0], (Names{"ann", "cid"})); // list order, not selection order
    EXPECT_EQ(s.Players[1].Team, 1);
    EXPECT_EQ(s.Players[3].Team, 1);
    EXPECT_EQ(s.Players[2].Team, 0);

    profiles::DeAssignPlayers(s, lists, 0, {0});
    EXPECT_EQ(lists.Players, (Names{"bob", "ann"}));
    EXPECT_EQ(lists.PlayTeam[0], (Names{"cid"}));
    EXPECT_EQ(s.Players[1].Team, 0);
}

TEST(TeamAssignment, AssignAllAndRemoveAll) {
    GameState s = State({{"ann", 0}, {"bob", 1}, {"cid", 0}});
    auto lists = profiles::FillAssignmentLists(s);
    profiles::AssignAllPlayers(s, lists, 1);
    EXPECT_TRUE(lists.Players.empty());
    EXPECT_EQ(lists.PlayTeam[1], (Names{"ann", "cid"}));
    EXPECT_EQ(s.Players[3].Team, 2);

    const GameState before = s;
    const auto listsBefore = lists;
    profiles::AssignAllPlayers(s, lists, 0); // nothing left to assign
    EXPECT_EQ(lists, listsBefore);
    EXPECT_EQ(s.Players, before.Players);

    profiles::DeAssignAllPlayers(s, lists, 0);
    EXPECT_EQ(lists.Players, (Names{"bob"}));
    EXPECT_EQ(s.Players[2].Team, 0);
    EXPECT_EQ(s.Players[1].Team, 2);
}

TEST(TeamAssignment, DuplicateNamesAllLandOnTheFirstSlot) {
    GameState s = State({{"twin", 0}, {"twin", 0}});
    auto lists = profiles::FillAssignmentLists(s);
    profiles::AssignPlayers(s, lists, 1, {1});
    EXPECT_EQ(s.Players[1].Team, 2);
    EXPECT_EQ(s.Players[2].Team, 0);
    EXPECT_EQ(lists.Players, (Names{"twin"}));
    EXPECT_THROW(profiles::AssignPlayers(s, lists, 2, {0}), tallybot::vb::VbError); // only red and blue
    profiles::AssignPlayers(s, lists, 0, {5});                                      // no such row
    EXPECT_EQ(s.Players[2].Team, 0);
}

struct ScoreCase {
    const char* red;
    const char* blue;
    bool ok;
    int expectedRed;
    int expectedBlue;
    const char* message;
};

class ScoreCorrection : public ::testing::TestWithParam<ScoreCase> {};

TEST_P(ScoreCorrection, ConvertsBothOrChangesNothing) {
    const ScoreCase& c = GetParam();
    GameState s;
    s.TeamScoreRed = 2;
    s.TeamScoreBlue = 4;
    std::int32_t previousRed = 2;
    std::int32_t previousBlue = 4;
    const auto error = profiles::CorrectScore(s, c.red, c.blue, previousRed, previousBlue);
    EXPECT_EQ(!error.has_value(), c.ok);
    EXPECT_EQ(error.value_or(""), c.message);
    EXPECT_EQ(s.TeamScoreRed, c.expectedRed);
    EXPECT_EQ(s.TeamScoreBlue, c.expectedBlue);
    // The capture check compares against these: equal scores mean no capture and no post.
    EXPECT_EQ(previousRed, c.expectedRed);
    EXPECT_EQ(previousBlue, c.expectedBlue);
}

constexpr const char* kRedBad = "The red score must be a number from -32768 to 32767. The scores were not changed.";
constexpr const char* kBlueBad = "The blue score must be a number from -32768 to 32767. The scores were not changed.";

INSTANTIATE_TEST_SUITE_P(
    Texts, ScoreCorrection,
    ::testing::Values(ScoreCase{"3", "4", true, 3, 4, ""}, ScoreCase{"-32768", "32767", true, -32768, 32767, ""},
                      ScoreCase{" 2.5 ", "3.5", true, 2, 4, ""}, // half to even
                      ScoreCase{"32768", "1", false, 2, 4, kRedBad}, ScoreCase{"1", "-32769", false, 2, 4, kBlueBad},
                      ScoreCase{"", "1", false, 2, 4, kRedBad}, ScoreCase{"5", "five", false, 2, 4, kBlueBad}),
    [](const auto& info) {
        using tallybot::testsupport::ParamWord;
        return "Red" + ParamWord(info.param.red) + "Blue" + ParamWord(info.param.blue);
    });

TEST(ScoreCorrection, SurvivesTheNextParseOfTheSameScores) {
    GameState s = State({{"ann", 1}, {"bob", 2}});
    s.Players[1].Score = 2;
    tallybot::profiles::GameProfile profile; // Advanced 0: scores summed from the players
    tallybot::query::UpdateTeamScores(s, profile);
    ASSERT_EQ(s.TeamScoreRed, 2);
    std::int32_t previousRed = 2;
    std::int32_t previousBlue = 0;
    ASSERT_FALSE(profiles::CorrectScore(s, "3", "0", previousRed, previousBlue));
    tallybot::query::UpdateTeamScores(s, profile);
    EXPECT_EQ(s.TeamScoreRed, 3);
    EXPECT_EQ(s.TeamScoreRed, previousRed); // the capture check sees no rise: nothing is posted
}

} // namespace
