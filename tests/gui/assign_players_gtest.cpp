// The team-assignment dialog on a player table: assign, remove, and "all" on an empty list.
#include "gui/frm_assign_players.h"
#include "query/game_state.h"

#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

TEST(AssignPlayers, AssignThenRemoveReturnsThePlayerWithoutTeam) {
    query::GameState game;
    game.Status.NumPlayers = 3;
    game.Players[1] = {0, 0, "anna", 0, "", 0};
    game.Players[2] = {0, 0, "bert", 2, "", 0};
    game.Players[3] = {0, 0, "carl", 0, "", 0};
    desktop::frmAssignPlayers dialog(game, false);
    ASSERT_EQ(dialog.Players().count(), 2);
    EXPECT_EQ(dialog.findChild<QPushButton*>("cmdAssign(1)")->text(), "Add to Blue >");
    EXPECT_EQ(dialog.findChild<QPushButton*>("cmdDeAssignAll(0)")->text(), "<< All from Red");
    EXPECT_EQ(dialog.PlayTeam(1).item(0)->text(), "bert");

    dialog.Players().item(1)->setSelected(true);
    dialog.findChild<QPushButton*>("cmdAssign(0)")->click();
    EXPECT_EQ(game.Players[3].Team, 1);
    EXPECT_EQ(dialog.PlayTeam(0).item(0)->text(), "carl");
    EXPECT_EQ(dialog.Players().count(), 1);

    dialog.PlayTeam(0).item(0)->setSelected(true);
    dialog.findChild<QPushButton*>("cmdDeAssign(0)")->click();
    EXPECT_EQ(game.Players[3].Team, 0);
    EXPECT_EQ(dialog.PlayTeam(0).count(), 0);
    EXPECT_EQ(dialog.Players().count(), 2);

    dialog.findChild<QPushButton*>("cmdDeAssignAll(1)")->click();
    EXPECT_EQ(game.Players[2].Team, 0);
    dialog.findChild<QPushButton*>("cmdAssignAll(1)")->click();
    EXPECT_EQ(dialog.Players().count(), 0);
    EXPECT_EQ(dialog.PlayTeam(1).count(), 3);
    dialog.findChild<QPushButton*>("cmdAssignAll(0)")->click(); // nothing left to assign
    EXPECT_EQ(dialog.PlayTeam(0).count(), 0);
    EXPECT_EQ(game.Players[1].Team, 2);
}

} // namespace
} // namespace tallybot::guitest
