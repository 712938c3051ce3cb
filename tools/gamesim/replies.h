#pragma once
// Replies of every engine to its status requests, built from the match state. The simulator
// listens on a game port and on the port after it: GameSpy-style engines (UT, AA, UT2003) answer
// their full status only on that query port and send a short pointer on the game port.

#include "match_script.h"

#include <string>
#include <string_view>
#include <vector>

namespace tallybot::gamesim {

// The simulator's own engine code "DP": a DarkPlaces (Xonotic) server.
inline constexpr int kDarkPlacesEngineId = 19;

// Datagrams to send back for one request to an engine's server; empty when the request is not
// one this engine answers (or the server is silent).
std::vector<std::string> RepliesTo(std::string_view request, const MatchState& state, bool onQueryPort, int gamePort);

} // namespace tallybot::gamesim
