// Unreal Tournament 2003 replies, one per sub-query; texts carry a length byte before them and
// end in 00. Bytes 1-4 are a header, byte 5 the reply type:
//   0 server  bytes 6-19 (server id, address, ports, the name's length byte), hostname 00,
//             len map 00, len gametype 00, numplayers (4), maxplayers (4, read up to its 00)
//   1 rules   one byte, then len key 00 len value 00 ...
//   2 players per player: id (4), len, name 00, ping (4, LE), score (4, LE)
// Each sub-reply fills only its own fields, so the three combine into one state.

#include "base/error_trap.h"
#include "base/vb_convert.h"
#include "query/byte_reader.h"
#include "query/name_colours.h"
#include "query/parsers.h"

#include <algorithm>
#include <string>

namespace tallybot::query {

namespace {

void ParseUT2003Server(std::string_view reply, ServerStatus& status, bool colourNames) {
    ByteReader reader(reply);
    reader.Skip(19);
    status.HostName = reader.Text();
    if (colourNames) status.HostName = UnrealColoursToIrc(status.HostName);
    reader.Skip(1);
    status.MapName = reader.Text();
    reader.Skip(1);
    status.GameName = reader.Text();
    reader.Skip(4);
    std::string_view maxPlayers = reader.Text();
    base::ResumeNext([&] { status.MaxClients = FirstCode(maxPlayers); });
    status.Version = "UT 2003";
}

void ParseUT2003Rules(std::string_view reply, ServerStatus& status) {
    // The trailing "*" keeps the last value from ending the scan early.
    std::string text(reply.substr(std::min<std::size_t>(6, reply.size())));
    text += '*';
    ByteReader reader(text);
    while (reader.Remaining() >= 5) {
        reader.Skip(1);
        std::string_view key = reader.Text();
        if (key == "timelimit") {
            reader.Skip(1);
            std::string_view value = reader.Text();
            base::ResumeNext([&] { status.TimeLimit = vb::CByte(static_cast<double>(vb::CLng(value))); });
        }
    }
    status.ScoreTime = "N/A";
}

void ParseUT2003Players(std::string_view reply, GameState& state) {
    ByteReader reader(reply);
    reader.Skip(5);
    int n = 0;
    // A 51st player is an index error that ends the list; the first 50 are kept.
    while (reader.Remaining() >= 5 && n < kMaxPlayers) {
        ++n;
        PlayerStatus& player = state.Players[static_cast<std::size_t>(n)];
        reader.Skip(5);
        player.Name = reader.Text();
        if (state.GameColoursToIrc) player.Name = UnrealColoursToIrc(player.Name);
        std::string_view ping = reader.Take(4);
        base::ResumeNext([&] { player.Ping = FirstCode(ping); }); // low byte only
        std::string_view score = reader.Take(4);
        base::ResumeNext([&] { player.Score = FirstCode(score); }); // low byte only
    }
    // Later slots are left as they are and no team scores are computed here.
    state.Status.NumPlayers = n;
}

} // namespace

void ParseUT2003Reply(std::string_view reply, GameState& state, [[maybe_unused]] const profiles::GameProfile& profile) {
    if (reply.size() < 5) return;
    switch (static_cast<unsigned char>(reply[4])) {
    case 0:
        ParseUT2003Server(reply, state.Status, state.GameColoursToIrc);
        break;
    case 1:
        ParseUT2003Rules(reply, state.Status);
        break;
    case 2:
        ParseUT2003Players(reply, state);
        break;
    default:
        break;
    }
}

} // namespace tallybot::query
