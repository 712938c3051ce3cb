// A2S replies; the fifth byte names the reply (integers little-endian, texts end in 00):
//   info    FF FF FF FF 'I' protocol (1) name map folder game appid (2) players (1) max (1)
//           bots (1) type (1) environment (1) visibility (1) vac (1) [The Ship, appid 2400: 3 bytes]
//           version [extra data flag (1) ...]
//   players FF FF FF FF 'D' count (1), then per player: index (1) name score (4, signed) time (4, float)
//   rules   FF FF FF FF 'E' count (2), then name value ...
// A2S reports no pings and no teams: pings stay 0, and the teams are whatever the operator
// assigned, which the player lines leave alone.

#include "query/a2s_parser.h"

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/byte_reader.h"
#include "query/parsers.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace tallybot::query {

namespace {

constexpr int kTheShipAppId = 2400;

// A little-endian integer of `size` bytes; a reply that ends first is an error the traps absorb.
std::uint32_t LittleEndian(ByteReader& reader, std::size_t size) {
    const std::string_view bytes = reader.Take(size);
    if (bytes.size() != size) throw InvalidCall();
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return value;
}

void ParseA2SInfo(std::string_view reply, ServerStatus& status) {
    ByteReader reader(reply);
    reader.Skip(5);
    base::ResumeNext([&] { status.Protocol = reader.Code(); });
    status.HostName = ClearName(reader.Text());
    status.MapName = reader.Text();
    status.GameName = reader.Text();
    reader.Text(); // game description
    int appId = 0;
    base::ResumeNext([&] { appId = static_cast<int>(LittleEndian(reader, 2)); });
    reader.Skip(1); // players: the player reply counts them
    base::ResumeNext([&] { status.MaxClients = reader.Code(); });
    reader.Skip(5); // bots, server type, environment, visibility, VAC
    if (appId == kTheShipAppId) reader.Skip(3);
    if (reader.Empty()) return;
    status.Version = reader.Text();
    status.GameVersion = status.Version;
}

void ParseA2SPlayers(std::string_view reply, GameState& state) {
    ByteReader reader(reply);
    reader.Skip(5);
    int count = 0;
    base::ResumeNext([&] { count = reader.Code(); });
    int n = 0;
    // The index byte, a name and two 4-byte fields make the shortest player.
    while (n < count && n < kMaxPlayers && reader.Remaining() >= 10) {
        ++n;
        PlayerStatus& player = state.Players[static_cast<std::size_t>(n)];
        reader.Skip(1);
        player.Name = ClearName(reader.Text());
        player.Ping = 0;
        player.Score = 0;
        base::ResumeNext([&] {
            const auto score = static_cast<std::int32_t>(LittleEndian(reader, 4));
            player.Score = vb::CInt(static_cast<double>(score));
        });
        reader.Skip(4); // seconds connected
    }
    state.Status.NumPlayers = n;
    base::ResumeNext([&] { ClearPlayers(state.Players, n + 1, 0); });
}

void ParseA2SRules(std::string_view reply, ServerStatus& status) {
    ByteReader reader(reply);
    reader.Skip(7); // header and rule count
    std::optional<std::int16_t> fragLimit;
    while (!reader.Empty()) {
        const std::string key = LowerAscii(reader.Text());
        const std::string_view value = reader.Text();
        if (key == "mp_timelimit") {
            base::ResumeNext([&] { status.TimeLimit = vb::CByte(vb::Val(value)); });
        } else if (key == "mp_fraglimit" || key == "mp_winlimit") {
            // Games set one of the two and leave the other 0: the one that is set counts.
            base::ResumeNext([&] { fragLimit = std::max(fragLimit.value_or(0), vb::CInt(vb::Val(value))); });
        } else if (key == "tf_flag_caps_per_round") {
            base::ResumeNext([&] { status.CaptureLimit = vb::CInt(vb::Val(value)); });
        } else if (key == "mp_timeleft") {
            status.ScoreTime = value;
        }
    }
    if (fragLimit) status.FragLimit = *fragLimit;
}

} // namespace

void ParseA2SReply(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply.size() < 5) return;
    switch (reply[4]) {
    case 'I':
        ParseA2SInfo(reply, state.Status);
        break;
    case 'D':
        ParseA2SPlayers(reply, state);
        if (profile.AutoTeams == 0) base::ResumeNext([&] { CalcTeamScores(state, 0, 0, profile); });
        break;
    case 'E':
        ParseA2SRules(reply, state.Status);
        break;
    default:
        break;
    }
    if (profile.Advanced == 0) state.Status.ScoreTime = "N/A";
}

} // namespace tallybot::query
