#pragma once
// Reply parsers of every engine. Each fills the game state from one reply under resume-next
// traps: a failed conversion abandons that field only, the state keeps what was filled.
// Every parser takes the raw reply as bytes, the one game state, and the active profile (the
// all-zero profile while none is chosen).

#include "profiles/game_profile.h"
#include "query/game_state.h"

#include <string_view>

namespace tallybot::query {

// The engine entry the query cycle calls after detection (GameSpy replies already assembled up
// to "\final\"): runs the engine's parser and its profile rules, then updates the team scores.
void ParseEngineReply(int engineId, std::string_view reply, GameState& state, const profiles::GameProfile& profile);

// --- Quake family (quake_*.cpp) ---

// The common Quake 3 family parser: status, team lists (AutoTeams 1), player lines. Player lines
// carry no score when state.EngineId is MoH.
void ParseQ3Family(std::string_view reply, GameState& state, const profiles::GameProfile& profile);
// The Quake 2 parser and entry: ignores "info" replies, always "N/A" time, CalcTeamScores(0) when
// AutoTeams is 0.
void ParseQ2(std::string_view reply, GameState& state, const profiles::GameProfile& profile);
// Engine entries of the Quake 3 family; each ignores its disconnect packet, then applies the
// "N/A" rule (Advanced 0) and CalcTeamScores (AutoTeams 0) with its own reset argument.
void ParseQ3Reply(std::string_view reply, GameState& state,
                  const profiles::GameProfile& profile); // 2: reset 0, Threewave time
void ParseQ3FamilyReply(std::string_view reply, GameState& state,
                        const profiles::GameProfile& profile); // 5-8, 11-13, 15: reset -1
void ParseMoHReply(std::string_view reply, GameState& state,
                   const profiles::GameProfile& profile); // 10: reset 0, no scores

// Sums the scores of team 1 and team 2 players (slots 1..NumPlayers) into ScoreRed/ScoreBlue;
// with Scoring 1 a player whose Flag exceeds his Score is credited with Flag. With reset 0 and
// a nonzero sum the sums are handed on as they stand; otherwise the remembered team scores of
// match reporting are reset (state.TeamScoreResets advances). `extra` is always 0.
void CalcTeamScores(GameState& state, int reset, int extra, const profiles::GameProfile& profile);

// --- GameSpy, Half-Life, FarCry, UT2003, Doom 3 ---

void ParseGameSpy(std::string_view reply, GameState& state, const profiles::GameProfile& profile); // 3, 14
void ParseD3EngineData(std::string_view reply, GameState& state,
                       const profiles::GameProfile& profile); // 17, rules in the entry
void ParseHLReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile);     // 4
void ParseFCReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile);     // 16
void ParseUT2003Reply(std::string_view reply, GameState& state, const profiles::GameProfile& profile); // 9

} // namespace tallybot::query
