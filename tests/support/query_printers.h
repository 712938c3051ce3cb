#pragma once
// Readable failure output for the game state records: gtest finds these through the types' namespace.

#include "query/game_state.h"

#include <ostream>

namespace tallybot::query {

inline void PrintTo(const ServerStatus& s, std::ostream* os) {
    *os << "{GameType=\"" << s.GameType << "\" CaptureLimit=" << s.CaptureLimit << " MaxClients=" << +s.MaxClients
        << " TimeLimit=" << +s.TimeLimit << " FragLimit=" << s.FragLimit << " HostName=\"" << s.HostName
        << "\" Version=\"" << s.Version << "\" Protocol=" << s.Protocol << " MapName=\"" << s.MapName
        << "\" GameName=\"" << s.GameName << "\" ScoreRed=" << s.ScoreRed << " ScoreBlue=" << s.ScoreBlue
        << " ScoreTime=\"" << s.ScoreTime << "\" GameVersion=\"" << s.GameVersion << "\" NumPlayers=" << s.NumPlayers
        << "}";
}

inline void PrintTo(const PlayerStatus& p, std::ostream* os) {
    *os << "{Score=" << p.Score << " Ping=" << p.Ping << " Name=\"" << p.Name << "\" Team=" << p.Team << " Mark=\""
        << p.Mark << "\" Flag=" << p.Flag << "}";
}

} // namespace tallybot::query
