// GameSpy "\status\" reply (Unreal Tournament, America's Army), assembled up to "\final\":
//   \key\value\key\value...\player_0\name\frags_0\12\ping_0\50\team_0\0\player_1\...\final\ (one text)
// Each player's group ends with its team key, which moves the player counter on.

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/byte_reader.h"
#include "query/parsers.h"

#include <cstdio>
#include <string>

namespace tallybot::query {

namespace {

// CStr of a double: up to 15 significant digits, no exponent for the values a version takes.
std::string DoubleText(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}

std::int16_t AddScore(std::int16_t sum, std::int16_t score) {
    int total = sum + score;
    if (total < INT16_MIN || total > INT16_MAX) throw vb::Overflow();
    return static_cast<std::int16_t>(total);
}

} // namespace

void ParseGameSpy(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    // A bare "@" notice from the game port is not a status reply.
    if (reply.find('@') != std::string_view::npos && reply.size() < 11) return;

    ServerStatus& status = state.Status;
    PlayerTable& players = state.Players;
    ClearServerStatus(status);

    ByteReader reader(reply);
    reader.Skip(1);
    long long i = 0;
    for (;;) {
        std::string key = LowerAscii(reader.Text('\\'));
        if (key.empty()) break;
        const std::string index = vb::CStr(i);
        if (key == "gametype") {
            status.GameType = reader.Text('\\');
        } else if (key == "gamever") {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] { status.Version = DoubleText(vb::CInt(value) / 100.0); });
        } else if (key == "hostname") {
            status.HostName = reader.Text('\\');
        } else if (key == "mapname") {
            status.MapName = reader.Text('\\');
        } else if (key == "timelimit") {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] { status.TimeLimit = vb::CByte(static_cast<double>(vb::CLng(value))); });
        } else if (key == "goalteamscore") {
            // The second test of this key, meant for FragLimit, is never reached: FragLimit stays 0.
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] { status.CaptureLimit = vb::CInt(value); });
        } else if (key == "numplayers") {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] { status.NumPlayers = vb::CInt(value); });
        } else if (key == "maxplayers") {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] { status.MaxClients = vb::CByte(static_cast<double>(vb::CInt(value))); });
        } else if (key == "player_" + index) {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] { Slot(players, i + 1).Name = value; });
        } else if (key == "frags_" + index) {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] { Slot(players, i + 1).Score = vb::CInt(value); });
        } else if (key == "ping_" + index) {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] {
                std::int32_t ping = vb::CLng(value);
                Slot(players, i + 1).Ping = ping >= 999 ? 999 : ping;
            });
        } else if (key == "team_" + index) {
            std::string_view value = reader.Text('\\');
            base::ResumeNext([&] {
                PlayerStatus& player = Slot(players, i + 1);
                std::int16_t team = vb::CInt(value);
                if (team == 0) {
                    player.Team = 1;
                    status.ScoreRed = AddScore(status.ScoreRed, player.Score);
                } else if (team == 1) {
                    player.Team = 2;
                    status.ScoreBlue = AddScore(status.ScoreBlue, player.Score);
                }
            });
            ++i;
        }
    }

    if (UpperAscii(status.GameType).find("CTF") != std::string::npos) status.GameType = "CTF";
    status.ScoreTime = "N/A";
    base::ResumeNext([&] { CalcTeamScores(state, 0, 0, profile); });
    if (status.NumPlayers >= 0 && status.NumPlayers < kMaxPlayers) {
        base::ResumeNext([&] { ClearPlayers(players, status.NumPlayers + 1, 0); });
    }
}

} // namespace tallybot::query
