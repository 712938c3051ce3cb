#include "profiles/team_assignment.h"

#include "base/vb_convert.h"
#include "query/team_scores.h"

#include <algorithm>

namespace tallybot::profiles {

namespace {

constexpr int kNoTeam = 0;

int PlayerCount(const query::GameState& state) {
    return std::clamp<int>(state.Status.NumPlayers, 0, query::kMaxPlayers);
}

// Names cannot tell two players apart: the first slot with the name takes every change.
void SetTeamByName(query::GameState& state, const std::string& name, int team) {
    const int count = PlayerCount(state);
    for (int slot = 1; slot <= count; ++slot) {
        if (state.Players[slot].Name == name) {
            state.Players[slot].Team = team;
            return;
        }
    }
    // The player left since the dialog opened: the entry still moves, there is no slot to write.
}

// Moves the selected rows of `from` to the end of `to`, in list order, writing `team` for each.
void MoveRows(query::GameState& state, std::vector<std::string>& from, std::vector<std::string>& to,
              const std::vector<std::size_t>& rows, int team) {
    std::vector<bool> selected(from.size(), false);
    for (const auto row : rows) {
        if (row < from.size()) selected[row] = true;
    }
    std::vector<std::string> kept;
    for (std::size_t row = 0; row < from.size(); ++row) {
        if (!selected[row]) {
            kept.push_back(std::move(from[row]));
            continue;
        }
        SetTeamByName(state, from[row], team);
        to.push_back(std::move(from[row]));
    }
    from = std::move(kept);
}

std::vector<std::size_t> AllRows(const std::vector<std::string>& list) {
    std::vector<std::size_t> rows(list.size());
    for (std::size_t row = 0; row < rows.size(); ++row)
        rows[row] = row;
    return rows;
}

std::vector<std::string>& TeamList(AssignmentLists& lists, int index) {
    if (index < 0 || index > 1) throw vb::SubscriptOutOfRange();
    return lists.PlayTeam[static_cast<std::size_t>(index)];
}

} // namespace

AssignmentLists FillAssignmentLists(const query::GameState& state) {
    AssignmentLists lists;
    const int count = PlayerCount(state);
    for (int slot = 1; slot <= count; ++slot) {
        const auto& player = state.Players[slot];
        if (player.Team == 1) {
            lists.PlayTeam[0].push_back(player.Name);
        } else if (player.Team == 2) {
            lists.PlayTeam[1].push_back(player.Name);
        } else {
            lists.Players.push_back(player.Name);
        }
    }
    return lists;
}

void AssignPlayers(query::GameState& state, AssignmentLists& lists, int index, const std::vector<std::size_t>& rows) {
    MoveRows(state, lists.Players, TeamList(lists, index), rows, index + 1);
}

void AssignAllPlayers(query::GameState& state, AssignmentLists& lists, int index) {
    AssignPlayers(state, lists, index, AllRows(lists.Players));
}

void DeAssignPlayers(query::GameState& state, AssignmentLists& lists, int index, const std::vector<std::size_t>& rows) {
    MoveRows(state, TeamList(lists, index), lists.Players, rows, kNoTeam);
}

void DeAssignAllPlayers(query::GameState& state, AssignmentLists& lists, int index) {
    DeAssignPlayers(state, lists, index, AllRows(TeamList(lists, index)));
}

ScoreTexts FillScoreTexts(const query::GameState& state) {
    return {vb::CStr(state.TeamScoreRed), vb::CStr(state.TeamScoreBlue)};
}

std::optional<std::string> CorrectScore(query::GameState& state, std::string_view redText, std::string_view blueText,
                                        std::int32_t& previousRed, std::int32_t& previousBlue) {
    std::int16_t red = 0;
    std::int16_t blue = 0;
    try {
        red = vb::CInt(redText);
    } catch (const vb::VbError&) {
        return "The red score must be a number from -32768 to 32767. The scores were not changed.";
    }
    try {
        blue = vb::CInt(blueText);
    } catch (const vb::VbError&) {
        return "The blue score must be a number from -32768 to 32767. The scores were not changed.";
    }
    query::CorrectTeamScores(state, red, blue); // kept as an offset, so it survives the next parse
    previousRed = red;
    previousBlue = blue;
    return std::nullopt;
}

} // namespace tallybot::profiles
