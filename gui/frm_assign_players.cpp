#include "gui/frm_assign_players.h"

#include "gui/message_boxes.h"
#include "gui/ok_cancel_buttons.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tallybot::desktop {

namespace {

QListWidget* MakeList(const QString& name) {
    auto* list = new QListWidget;
    list->setObjectName(name);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setMinimumWidth(160);
    return list;
}

std::vector<std::size_t> SelectedRows(const QListWidget& list) {
    std::vector<std::size_t> rows;
    for (int i = 0; i < list.count(); ++i)
        if (list.item(i)->isSelected()) rows.push_back(static_cast<std::size_t>(i));
    return rows;
}

} // namespace

frmAssignPlayers::frmAssignPlayers(query::GameState& state, bool keepOnTop, QWidget* parent)
    : QDialog(parent), m_state(state), m_players(MakeList("lvwPlayers")) {
    setObjectName("frmAssignPlayers");
    setWindowTitle("Assign players to teams");
    if (keepOnTop) setWindowFlag(Qt::WindowStaysOnTopHint);

    auto* layout = new QHBoxLayout;
    auto* noTeam = new QGroupBox("Without team");
    auto* noTeamLayout = new QVBoxLayout(noTeam);
    noTeamLayout->addWidget(m_players);
    layout->addWidget(noTeam, 1);

    // Each team's buttons sit between "Without team" and that team, so their arrows point where
    // the players go.
    auto* teamsColumn = new QVBoxLayout;
    const char* teamNames[] = {"Red", "Blue"};
    for (int index = 0; index < 2; ++index) {
        const QString team = teamNames[index];
        auto* buttons = new QVBoxLayout;
        buttons->addStretch();
        const struct {
            const char* name;
            QString caption;
            void (frmAssignPlayers::*action)(int);
        } defs[] = {
            {"cmdAssign", QString("Add to %1 >").arg(team), &frmAssignPlayers::cmdAssign_Click},
            {"cmdAssignAll", QString("All to %1 >>").arg(team), &frmAssignPlayers::cmdAssignAll_Click},
            {"cmdDeAssign", QString("< Remove from %1").arg(team), &frmAssignPlayers::cmdDeAssign_Click},
            {"cmdDeAssignAll", QString("<< All from %1").arg(team), &frmAssignPlayers::cmdDeAssignAll_Click},
        };
        for (const auto& def : defs) {
            auto* button = new QPushButton(def.caption);
            button->setObjectName(QString("%1(%2)").arg(def.name).arg(index));
            const auto action = def.action;
            connect(button, &QPushButton::clicked, this, [this, action, index] { (this->*action)(index); });
            buttons->addWidget(button);
        }
        buttons->addStretch();
        m_playTeam[static_cast<std::size_t>(index)] = MakeList(QString("lvwPlayTeam(%1)").arg(index));
        auto* group = new QGroupBox(team + " team");
        group->setStyleSheet(index == 0 ? "QGroupBox { color: #b00000; }" : "QGroupBox { color: #0030c0; }");
        auto* teamLayout = new QVBoxLayout(group);
        teamLayout->addWidget(m_playTeam[static_cast<std::size_t>(index)]);
        auto* row = new QHBoxLayout;
        row->addLayout(buttons);
        row->addWidget(group, 1);
        teamsColumn->addLayout(row, 1);
    }
    layout->addLayout(teamsColumn, 2);

    auto* close = new QPushButton("Close");
    close->setObjectName("cmdClose");
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(new QLabel("Changes take effect at once."));
    bottom->addStretch();
    bottom->addWidget(close);
    auto* outer = new QVBoxLayout(this);
    outer->addLayout(layout, 1);
    outer->addLayout(bottom);
    resize(640, 480);

    m_lists = profiles::FillAssignmentLists(m_state);
    ShowLists();
}

void frmAssignPlayers::ShowLists() {
    const auto fill = [](QListWidget& list, const std::vector<std::string>& names) {
        list.clear();
        for (const auto& name : names)
            list.addItem(FromBytes(name));
    };
    fill(*m_players, m_lists.Players);
    fill(*m_playTeam[0], m_lists.PlayTeam[0]);
    fill(*m_playTeam[1], m_lists.PlayTeam[1]);
}

void frmAssignPlayers::cmdAssign_Click(int index) {
    profiles::AssignPlayers(m_state, m_lists, index, SelectedRows(*m_players));
    ShowLists();
}

void frmAssignPlayers::cmdAssignAll_Click(int index) {
    profiles::AssignAllPlayers(m_state, m_lists, index);
    ShowLists();
}

void frmAssignPlayers::cmdDeAssign_Click(int index) {
    profiles::DeAssignPlayers(m_state, m_lists, index, SelectedRows(PlayTeam(index)));
    ShowLists();
}

void frmAssignPlayers::cmdDeAssignAll_Click(int index) {
    profiles::DeAssignAllPlayers(m_state, m_lists, index);
    ShowLists();
}

} // namespace tallybot::desktop
