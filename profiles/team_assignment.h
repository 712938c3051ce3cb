#pragma once
// What the team-assignment and score-correction dialogs do, without the dialogs: for servers that
// report no teams the operator puts players into red or blue by hand, and overwrites the two team
// scores when the server gets them wrong. Both work on the live game state at once.

#include "query/game_state.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallybot::profiles {

// The lists the assignment dialog shows, in player-table order when first filled.
struct AssignmentLists {
    std::vector<std::string> Players;                 // lvwPlayers: players with Team 0 (or any other value)
    std::array<std::vector<std::string>, 2> PlayTeam; // lvwPlayTeam(0): red (Team 1), (1): blue (Team 2)

    bool operator==(const AssignmentLists&) const = default;
};

// Form_Load: players 1..NumPlayers sorted into the three lists by their Team.
AssignmentLists FillAssignmentLists(const query::GameState& state);

// cmdAssign(index): each selected row of lvwPlayers, in list order, gets Team index + 1 on the first
// player slot with exactly that name and moves to lvwPlayTeam(index). Rows out of range are ignored;
// an index other than 0 or 1 throws SubscriptOutOfRange.
void AssignPlayers(query::GameState& state, AssignmentLists& lists, int index, const std::vector<std::size_t>& rows);
// cmdAssignAll(index): every row of lvwPlayers.
void AssignAllPlayers(query::GameState& state, AssignmentLists& lists, int index);
// cmdDeAssign(index): each selected row of lvwPlayTeam(index) gets Team 0 and moves back to lvwPlayers.
void DeAssignPlayers(query::GameState& state, AssignmentLists& lists, int index, const std::vector<std::size_t>& rows);
// cmdDeAssignAll(index): every row of lvwPlayTeam(index).
void DeAssignAllPlayers(query::GameState& state, AssignmentLists& lists, int index);

// The texts txtScoreRed and txtScoreBlue open with.
struct ScoreTexts {
    std::string Red;
    std::string Blue;
};
ScoreTexts FillScoreTexts(const query::GameState& state);

inline constexpr const char* kCorrectScoreTitle = "Correct score";

// cmdOK: both texts are converted to 16-bit signed integers first; only when both convert are the
// team scores set, and the capture check's previous scores follow them so that the correction is
// never posted as a capture or score change. Returns the message to show (scores untouched) when
// a text is not a number from -32768 to 32767, nothing on success.
std::optional<std::string> CorrectScore(query::GameState& state, std::string_view redText, std::string_view blueText,
                                        std::int32_t& previousRed, std::int32_t& previousBlue);

} // namespace tallybot::profiles
