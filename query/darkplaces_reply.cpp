#include "query/darkplaces_reply.h"

#include <cctype>

namespace tallybot::query {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kHead = "\xFF\xFF\xFF\xFFstatusResponse\n\\gamename\\"sv;

// The text up to the separator; the rest starts after it (empty when there is none).
std::string_view Take(std::string_view& rest, char separator) {
    const std::size_t at = rest.find(separator);
    const std::string_view part = rest.substr(0, at);
    rest = at == std::string_view::npos ? std::string_view() : rest.substr(at + 1);
    return part;
}

bool IsHex(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// "^xRGB" doubled to "^xRRGGBB"; a "^x" followed by fewer than three hex digits stays as it is.
std::string WidenColours(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '^' && i + 4 < text.size() && (text[i + 1] == 'x' || text[i + 1] == 'X') && IsHex(text[i + 2]) &&
            IsHex(text[i + 3]) && IsHex(text[i + 4])) {
            out += text.substr(i, 2);
            for (std::size_t k = 2; k <= 4; ++k)
                out.append(2, text[i + k]);
            i += 4;
            continue;
        }
        out += text[i];
    }
    return out;
}

void AddToList(std::string& list, int slot) {
    list += (list.empty() ? "" : " ") + std::to_string(slot);
}

} // namespace

bool IsDarkPlacesReply(std::string_view reply) {
    if (reply.substr(0, kHead.size()) != kHead) return false;
    std::string_view rest = reply.substr(kHead.size());
    Take(rest, '\\'); // the game name
    return rest.substr(0, 8) == "modname\\"sv;
}

std::string DarkPlacesGameName(std::string_view reply) {
    if (!IsDarkPlacesReply(reply)) return {};
    std::string_view rest = reply.substr(kHead.size());
    return std::string(Take(rest, '\\'));
}

std::string DarkPlacesAsQuake3(std::string_view reply) {
    std::string_view rest = reply;
    std::string out(Take(rest, '\n'));
    out += '\n';

    std::string_view keys = Take(rest, '\n');
    if (!keys.empty() && keys.front() == '\\') keys.remove_prefix(1);
    std::string gameType;
    bool hasGameType = false;
    while (!keys.empty()) {
        const std::string_view key = Take(keys, '\\');
        const std::string_view value = Take(keys, '\\');
        if (key == "hostname") {
            out += "\\sv_hostname\\" + WidenColours(value);
            continue;
        }
        if (key == "qcstatus") gameType = std::string(value.substr(0, value.find(':')));
        if (key == "g_gametype") hasGameType = true;
        out += "\\" + std::string(key) + "\\" + std::string(value);
    }
    if (!hasGameType && !gameType.empty()) out += "\\g_gametype\\" + gameType;

    // Player lines: score, ping, an optional team number, then the quoted name.
    std::string players, red, blue;
    int slot = 0;
    while (!rest.empty()) {
        std::string_view line = Take(rest, '\n');
        if (line.empty()) continue;
        ++slot;
        const std::string_view score = Take(line, ' ');
        const std::string_view ping = Take(line, ' ');
        if (line.empty() || line.front() != '"') {
            const std::string_view team = Take(line, ' ');
            if (team == "1") AddToList(red, slot);
            if (team == "2") AddToList(blue, slot);
        }
        players += std::string(score) + " " + std::string(ping) + " " + WidenColours(line) + "\n";
    }
    if (!red.empty() || !blue.empty())
        out +=
            "\\players_red\\" + (red.empty() ? "(None)" : red) + "\\players_blue\\" + (blue.empty() ? "(None)" : blue);
    return out + "\n" + players;
}

} // namespace tallybot::query
