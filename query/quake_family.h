#pragma once
// Pieces shared by the Quake 3 family entries.

#include "profiles/game_profile.h"
#include "query/game_state.h"

#include <string_view>

namespace tallybot::query::quake {

// The family parser with the player-line layout chosen by the caller: MoH lines carry no score.
void ParseQ3FamilyLines(std::string_view reply, GameState& state, const profiles::GameProfile& profile,
                        bool linesWithoutScore);

// Threewave servers report elapsed time as "m:ss"; turns it into the time left of TimeLimit.
void ApplyThreewaveTime(ServerStatus& status);

} // namespace tallybot::query::quake
