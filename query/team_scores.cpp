#include "query/team_scores.h"

#include "query/parsers.h"

namespace tallybot::query {

namespace {

int LastSlot(const GameState& state) {
    int n = state.Status.NumPlayers;
    return n < kMaxPlayers ? n : kMaxPlayers; // slots past the table are index errors, skipped
}

std::int32_t Credit(const PlayerStatus& p, int scoringMode) {
    return (scoringMode == 1 && p.Flag > p.Score) ? p.Flag : p.Score;
}

// A 16-bit sum that would overflow keeps its value, as the failed addition is abandoned.
void AddInt16(std::int16_t& sum, std::int32_t value) {
    std::int32_t total = sum + value;
    if (total >= INT16_MIN && total <= INT16_MAX) sum = static_cast<std::int16_t>(total);
}

} // namespace

void CalcTeamScores(GameState& state, int reset, int /*extra*/, const profiles::GameProfile& profile) {
    ServerStatus& s = state.Status;
    s.ScoreRed = 0;
    s.ScoreBlue = 0;
    for (int i = 1; i <= LastSlot(state); ++i) {
        const PlayerStatus& p = state.Players[static_cast<std::size_t>(i)];
        if (p.Team == 1) AddInt16(s.ScoreRed, Credit(p, profile.Scoring));
        if (p.Team == 2) AddInt16(s.ScoreBlue, Credit(p, profile.Scoring));
    }
    // Sums handed on (reset 0, something scored) become the team scores in UpdateTeamScores;
    // otherwise match reporting forgets its remembered scores.
    if (reset == 0 && (s.ScoreRed != 0 || s.ScoreBlue != 0)) return;
    ++state.TeamScoreResets;
}

TeamSums PlayerTeamSums(const GameState& state, int scoringMode) {
    TeamSums sums;
    for (int i = 1; i <= LastSlot(state); ++i) {
        const PlayerStatus& p = state.Players[static_cast<std::size_t>(i)];
        if (p.Team == 1) sums.Red += Credit(p, scoringMode);
        if (p.Team == 2) sums.Blue += Credit(p, scoringMode);
    }
    return sums;
}

void UpdateTeamScores(GameState& state, const profiles::GameProfile& profile) {
    if (profile.Advanced == 1) {
        state.TeamScoreRed = state.Status.ScoreRed;
        state.TeamScoreBlue = state.Status.ScoreBlue;
        state.TeamScoreOffsetRed = 0;
        state.TeamScoreOffsetBlue = 0;
        return;
    }
    TeamSums before{state.TeamScoreRed - state.TeamScoreOffsetRed, state.TeamScoreBlue - state.TeamScoreOffsetBlue};
    TeamSums now = PlayerTeamSums(state, profile.Scoring);
    bool backToZero = now.Red == 0 && now.Blue == 0 && (before.Red != 0 || before.Blue != 0);
    if (backToZero) {
        state.TeamScoreOffsetRed = 0;
        state.TeamScoreOffsetBlue = 0;
    }
    state.TeamScoreRed = now.Red + state.TeamScoreOffsetRed;
    state.TeamScoreBlue = now.Blue + state.TeamScoreOffsetBlue;
}

void CorrectTeamScores(GameState& state, int red, int blue) {
    state.TeamScoreOffsetRed += red - state.TeamScoreRed;
    state.TeamScoreOffsetBlue += blue - state.TeamScoreBlue;
    state.TeamScoreRed = red;
    state.TeamScoreBlue = blue;
}

void ResetTeamScores(GameState& state) {
    state.TeamScoreRed = 0;
    state.TeamScoreBlue = 0;
    state.TeamScoreOffsetRed = 0;
    state.TeamScoreOffsetBlue = 0;
}

} // namespace tallybot::query
