// The line layout both Quake status replies share: a header line, one line of "\"-separated
// keys and values, then one line per player.

#include "base/error_trap.h"
#include "query/name_colours.h"
#include "query/parsers.h"
#include "query/quake_family.h"
#include "query/quake_text.h"

namespace tallybot::query::quake {

std::string_view TakeKeyLine(std::string_view& rest) {
    Extract(rest, '\n'); // header
    std::string_view keys = Extract(rest, '\n');
    if (!keys.empty()) keys.remove_prefix(1); // the leading "\"
    return keys;
}

int ReadPlayerLines(std::string_view& rest, PlayerTable& players, int n, bool withScore, bool colourNames) {
    // A player beyond slot 50 is out of the table: the lines end there and the first ones stay.
    while (!rest.empty() && n < kMaxPlayers) {
        ++n;
        PlayerStatus& p = players[static_cast<std::size_t>(n)];
        std::string_view line = Extract(rest, '\n');
        if (withScore) {
            std::string_view score = Extract(line, ' ');
            base::ResumeNext([&] { p.Score = ToInt16(score); });
        }
        std::string_view ping = Extract(line, ' ');
        base::ResumeNext([&] { p.Ping = ToInt32(ping); });
        p.Name = CleanName(line, colourNames);
    }
    return n;
}

} // namespace tallybot::query::quake
