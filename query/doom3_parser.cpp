// Doom 3 info reply:
//   FF FF "infoResponse" 00, challenge (4), protocol (4, high half 01 00)
//   key 00 value 00 ... ended by an empty key (00 00)
//   per player: client (1), ping (2, high byte first), rate (4), name 00
//   client 0x20 ends the list
// The key list is found by the protocol's 00 01 00 rather than by counting the header.

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/byte_reader.h"
#include "query/name_colours.h"
#include "query/parsers.h"

#include <algorithm>
#include <string>

namespace tallybot::query {

namespace {

constexpr std::string_view kProtocolHigh{"\0\x01\0", 3};
constexpr std::string_view kListEnd{"\0\0", 2};
constexpr std::string_view kNoPlayers{"\0\x20", 2};

// The first byte is taken as the high byte on purpose; a sum past 32767 overflows the 16-bit
// arithmetic and the ping keeps its old value.
std::int16_t HighFirstPing(std::string_view bytes) {
    if (bytes.size() < 2) throw InvalidCall();
    int value = FirstCode(bytes) * 256 + FirstCode(bytes.substr(1));
    if (value > INT16_MAX) throw vb::Overflow();
    return static_cast<std::int16_t>(value);
}

void ReadD3EngineData(std::string_view reply, GameState& state) {
    ServerStatus& status = state.Status;
    ClearServerStatus(status);

    // Without the protocol bytes, reading starts behind FF FF.
    std::size_t found = reply.find(kProtocolHigh);
    std::size_t start = found == std::string_view::npos ? 2 : found + 3;
    ByteReader reader(reply.substr(std::min(start, reply.size())));

    bool noPlayers = false;
    while (!reader.Empty() && !reader.StartsWith(kListEnd)) {
        std::string key = LowerAscii(reader.Text());
        if (key == "si_gametype") {
            status.GameType = LowerAscii(reader.Text());
        } else if (key == "si_maxplayers") {
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.MaxClients = vb::CByte(value); });
        } else if (key == "si_timelimit") {
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.TimeLimit = vb::CByte(value); });
        } else if (key == "si_fraglimit") {
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.FragLimit = vb::CInt(value); });
        } else if (key == "si_name") {
            status.HostName = CleanName(reader.Text(), state.GameColoursToIrc);
        } else if (key == "si_map") {
            status.MapName = reader.Text();
        } else if (key == "gamename") {
            status.GameName = reader.Text();
        } else if (key == "si_version") {
            status.GameVersion = reader.Text();
        } else if (reader.StartsWith(std::string_view("\0", 1))) {
            reader.Skip(1); // an unknown key's empty value
        }
        if (reader.StartsWith(kNoPlayers)) {
            noPlayers = true;
            break;
        }
    }

    int n = 0;
    if (!noPlayers) {
        reader.Skip(2);
        // A 51st player is an index error that ends the list; the first 50 are kept.
        while (reader.Remaining() >= 6 && n < kMaxPlayers) {
            ++n;
            PlayerStatus& player = state.Players[static_cast<std::size_t>(n)];
            reader.Skip(1);
            std::string_view ping = reader.Take(2);
            base::ResumeNext([&] { player.Ping = HighFirstPing(ping); });
            reader.Skip(4);
            player.Name = CleanName(reader.Text(), state.GameColoursToIrc);
        }
    }
    status.NumPlayers = n;
    base::ResumeNext([&] { ClearPlayers(state.Players, n + 1, 0); });
}

} // namespace

// The engine entry (ParseEngineReply) ignores the disconnect packet and applies the profile rules.
void ParseD3EngineData(std::string_view reply, GameState& state,
                       [[maybe_unused]] const profiles::GameProfile& profile) {
    ReadD3EngineData(reply, state);
}

} // namespace tallybot::query
