#pragma once
// The game state the parsers fill and match reporting reads: one server status record, the
// 51-slot player table (players from slot 1), and the engine bookkeeping of the query side.
// Replies are byte strings: std::string holds 0x00 and 0xFF bytes unchanged.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tallybot::query {

enum EngineIdValue : int {
    kEngineUnknown = 0,
    kEngineQ2 = 1,
    kEngineQ3 = 2,
    kEngineUT = 3,
    kEngineHL = 4,
    kEngineRTCW = 5,
    kEngineEF = 6,
    kEngineJK2 = 7,
    kEngineSoF2 = 8,
    kEngineUT2k3 = 9,
    kEngineMoH = 10,
    kEngineET = 11,
    kEngineJA = 12,
    kEngineCoD = 13,
    kEngineAA = 14,
    kEngineEF2 = 15,
    kEngineFC = 16,
    kEngineD3 = 17,
    kEnginePending = 99,
};
constexpr int kEngineCount = 17;

struct ServerStatus {
    std::string GameType;
    std::int16_t CaptureLimit = 0;
    std::uint8_t MaxClients = 0;
    std::uint8_t TimeLimit = 0;
    std::int16_t FragLimit = 0;
    std::string HostName;
    std::string Version;
    std::int16_t Protocol = 0;
    std::string MapName;
    std::string GameName;
    std::int16_t ScoreRed = 0;
    std::int16_t ScoreBlue = 0;
    std::string ScoreTime;
    std::string GameVersion;
    std::int32_t NumPlayers = 0;

    bool operator==(const ServerStatus&) const = default;
};

struct PlayerStatus {
    std::int16_t Score = 0;
    std::int32_t Ping = 0;
    std::string Name;
    std::int32_t Team = 0; // 0 none, 1 red (axis), 2 blue (allies)
    std::string Mark;      // owned by match reporting
    std::int32_t Flag = 0; // owned by match reporting; survives a clear with keepFlag

    bool operator==(const PlayerStatus&) const = default;
};

constexpr int kMaxPlayers = 50;
using PlayerTable = std::array<PlayerStatus, kMaxPlayers + 1>; // slot 0 stays empty

// Everything the query side knows about the one server it follows.
struct GameState {
    ServerStatus Status;
    PlayerTable Players{};
    int EngineId = kEngineUnknown;
    int QueryStep = 0;       // sub-query of HL, UT2k3 and FC
    int QueryPortOffset = 0; // 1 after a reply pointed to the GameSpy-style query port
    // The team scores templates and the capture check read; they follow ScoreRed/ScoreBlue or
    // are summed from the players, as the active profile says.
    std::int32_t TeamScoreRed = 0;
    std::int32_t TeamScoreBlue = 0;
    // Manual score correction kept as an offset over the scores summed from the players
    // (query/team_scores.h), so that it survives the following parses.
    std::int32_t TeamScoreOffsetRed = 0;
    std::int32_t TeamScoreOffsetBlue = 0;
    // Advanced by CalcTeamScores whenever it resets the remembered team scores; match reporting
    // zeroes its previous and last-posted scores when this changes and both teams are at 0.
    std::int32_t TeamScoreResets = 0;
    // [Extras] GameColoursToIrc: the parsers keep name colours as IRC colours (query/name_colours.h).
    bool GameColoursToIrc = false;
};

// Engine code of an id ("Q2" ... "D3"); empty for any value outside 1..17.
std::string EngineCode(int engineId);

void ClearServerStatus(ServerStatus& status); // "0" for Version and GameName
void ClearPlayers(PlayerTable& table, int first, int keepFlag);
// Sets Team for each space-separated slot number; a number outside 0..50 throws SubscriptOutOfRange.
void AssignTeamList(std::string_view list, PlayerTable& table, int team);
// Returns the text before the delimiter and removes it and the delimiter from source; without the
// delimiter returns the rest and empties source.
std::string ExtractString(std::string& source, std::string_view delimiter);
// Strips caret colour codes and double quotes; never fails.
std::string ClearName(std::string_view text);
// Settles EngineId (and QueryPortOffset) from the first reply of an unknown server.
void DetectEngine(std::string_view reply, GameState& state);

} // namespace tallybot::query
