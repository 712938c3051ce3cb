#pragma once
// Team scores: what templates, the capture check and the score-correction dialog use
// (GameState::TeamScoreRed/TeamScoreBlue), as opposed to what the parsers fill
// (ServerStatus::ScoreRed/ScoreBlue).
//
// - Profile Advanced 1 (the server reports team scores): after every parse the team scores are
//   ScoreRed/ScoreBlue as the reply left them. The server is the authority, so a manual
//   correction lasts only until the next reply and any stored correction is dropped.
// - Advanced anything else (the server does not report them): the team scores are the sums of
//   the players' scores of team 1 and team 2 (slots 1..NumPlayers), plus a correction offset.
//   With Scoring 1 a player whose Flag exceeds his Score is credited with Flag, as
//   CalcTeamScores does; every other mode sums Score.
// - A correction (CorrectTeamScores, from the score-correction dialog) sets the team scores and
//   keeps the difference to the player sums as an offset (TeamScoreOffsetRed/Blue), so it
//   survives the following parses and later points add on top of it. The offset is dropped when
//   the player sums fall back to 0 for both teams after having been nonzero (a new match or an
//   empty server), and by ResetTeamScores when the query stops.
//
// The parsers' own CalcTeamScores (declared in parsers.h) keeps its per-engine reset argument;
// its reset only advances TeamScoreResets for match reporting.

#include "profiles/game_profile.h"
#include "query/game_state.h"

#include <cstdint>

namespace tallybot::query {

struct TeamSums {
    std::int32_t Red = 0;
    std::int32_t Blue = 0;
};

// The player sums of the scheme above.
TeamSums PlayerTeamSums(const GameState& state, int scoringMode);

// Run after every parse (ParseEngineReply does it).
void UpdateTeamScores(GameState& state, const profiles::GameProfile& profile);

// The operator's correction: the team scores become red and blue from now on.
void CorrectTeamScores(GameState& state, int red, int blue);

// Team scores and corrections back to 0 (query stopped).
void ResetTeamScores(GameState& state);

} // namespace tallybot::query
