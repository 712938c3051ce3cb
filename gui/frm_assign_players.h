#pragma once
// frmAssignPlayers: puts players into the red or blue team by hand, for servers that report no
// teams. Every move takes effect in the player table at once; there is no cancel.

#include "profiles/team_assignment.h"

#include <array>

#include <QDialog>

class QListWidget;

namespace tallybot::query {
struct GameState;
}

namespace tallybot::desktop {

class frmAssignPlayers : public QDialog {
public:
    frmAssignPlayers(query::GameState& state, bool keepOnTop, QWidget* parent = nullptr);

    void cmdAssign_Click(int index);
    void cmdAssignAll_Click(int index);
    void cmdDeAssign_Click(int index);
    void cmdDeAssignAll_Click(int index);

    QListWidget& Players() { return *m_players; }
    QListWidget& PlayTeam(int index) { return *m_playTeam[static_cast<std::size_t>(index)]; }

private:
    void ShowLists();

    query::GameState& m_state;
    profiles::AssignmentLists m_lists;
    QListWidget* m_players;
    std::array<QListWidget*, 2> m_playTeam{};
};

} // namespace tallybot::desktop
