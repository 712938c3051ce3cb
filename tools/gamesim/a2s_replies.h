#pragma once
// The simulator as a Source server (engine code "A2S"): every A2S request is first answered with
// a challenge, the same request carrying it gets the answer, and the rules answer always comes in
// two split datagrams, so a client has to reassemble it.

#include "match_script.h"

#include <string>
#include <string_view>
#include <vector>

namespace tallybot::gamesim {

inline constexpr int kA2SEngineId = 18;

// The challenge this server hands out.
std::string A2SChallenge();

std::vector<std::string> A2SRepliesTo(std::string_view request, const MatchState& state, int gamePort);

} // namespace tallybot::gamesim
