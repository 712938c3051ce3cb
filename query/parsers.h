#pragma once
// Reply parsers of every engine. Each fills the game state from one reply under resume-next
// traps: a failed conversion abandons that field only, the state keeps what was filled.

#include "profiles/game_profile.h"
#include "query/game_state.h"

#include <string_view>

namespace tallybot::query {

// The engine entry the query cycle calls after detection (GameSpy replies already assembled up
// to "\final\"): runs the engine's parser and its profile rules, then updates the team scores.
void ParseEngineReply(int engineId, std::string_view reply, GameState& state, const profiles::GameProfile& profile);

} // namespace tallybot::query
