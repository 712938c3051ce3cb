#pragma once
// Pieces shared by the Quake 2 and Quake 3 family parsers.

#include "profiles/game_profile.h"
#include "query/game_state.h"

#include <string_view>

namespace tallybot::query::quake {

// Drops the header line from `rest` and returns the key line without its leading "\"; `rest`
// then holds the player lines.
std::string_view TakeKeyLine(std::string_view& rest);

// Fills the slots after `n` from the player lines ("score ping name", or "ping name" without
// `withScore`) until the lines or the table end; returns the last slot filled. colourNames: game
// colours become IRC colours instead of being removed.
int ReadPlayerLines(std::string_view& rest, PlayerTable& players, int n, bool withScore, bool colourNames);

// The family parser with the player-line layout chosen by the caller: MoH lines carry no score.
void ParseQ3FamilyLines(std::string_view reply, GameState& state, const profiles::GameProfile& profile,
                        bool linesWithoutScore);

// Threewave servers report elapsed time as "m:ss"; turns it into the time left of TimeLimit.
void ApplyThreewaveTime(ServerStatus& status);

} // namespace tallybot::query::quake
