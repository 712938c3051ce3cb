#pragma once
// The A2S reply parser (engine 18): info, players and rules replies into the one game state.

#include "profiles/game_profile.h"
#include "query/game_state.h"

#include <string_view>

namespace tallybot::query {

// One whole (reassembled) A2S reply; each kind fills only its own fields, so the three replies
// of a round combine. Bounds-checked: a short reply fills what it holds and leaves the rest.
void ParseA2SReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile);

} // namespace tallybot::query
