#include "a2s_replies.h"

#include <algorithm>
#include <cstdint>

namespace tallybot::gamesim {

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

const std::string kOob = "\xFF\xFF\xFF\xFF"s;
constexpr std::uint32_t kSplitId = 0x00005A2Du;
constexpr std::size_t kSplitSize = 1248;

std::string Z(std::string_view text) {
    return std::string(text) + '\0';
}

std::string Byte(int value) {
    return std::string(1, static_cast<char>(std::clamp(value, 0, 255)));
}

std::string Le(std::uint32_t value, int bytes) {
    std::string out;
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>((value >> (8 * i)) & 0xFF);
    return out;
}

std::string Info(const MatchState& s, int gamePort) {
    const std::string version = s.version.empty() ? "8622567"s : s.version;
    return kOob + "I" + Byte(17) + Z(s.host) + Z(s.map) + Z(s.gameName) + Z("Tallybot Source Test") + Le(440, 2) +
           Byte(static_cast<int>(s.players.size())) + Byte(s.maxPlayers) + Byte(0) + "dl"s + Byte(0) + Byte(1) +
           Z(version) + Byte(0x80) + Le(static_cast<std::uint32_t>(gamePort), 2);
}

std::string Players(const MatchState& s) {
    std::string reply = kOob + "D" + Byte(static_cast<int>(s.players.size()));
    for (std::size_t i = 0; i < s.players.size(); ++i)
        reply += Byte(static_cast<int>(i)) + Z(s.players[i].name) +
                 Le(static_cast<std::uint32_t>(s.players[i].score), 4) + Le(0x43480000, 4); // 200.0 seconds
    return reply;
}

std::string Rules(const MatchState& s) {
    const std::string rules = Z("mp_timelimit") + Z(std::to_string(s.timeLimit)) + Z("mp_fraglimit") +
                              Z(std::to_string(s.fragLimit)) + Z("tf_flag_caps_per_round") +
                              Z(std::to_string(s.captureLimit)) + Z("mp_timeleft") + Z(s.timeText);
    return kOob + "E" + Le(4, 2) + rules;
}

// A reply in two parts: FF FF FF FE, id, total, number, split size, then half the reply each.
std::vector<std::string> Split(const std::string& reply) {
    const std::size_t half = reply.size() / 2;
    const std::string head = "\xFF\xFF\xFF\xFE"s + Le(kSplitId, 4) + Byte(2);
    return {head + Byte(0) + Le(kSplitSize, 2) + reply.substr(0, half),
            head + Byte(1) + Le(kSplitSize, 2) + reply.substr(half)};
}

} // namespace

std::string A2SChallenge() {
    return "\x4B\xA1\x40\x07"s;
}

std::vector<std::string> A2SRepliesTo(std::string_view request, const MatchState& state, int gamePort) {
    if (request.substr(0, 4) != kOob || request.size() < 5) return {};
    const char kind = request[4];
    std::string_view challenge;
    if (kind == 'T') {
        const std::string_view query = "TSource Engine Query\0"sv;
        if (request.substr(4, query.size()) != query) return {};
        challenge = request.substr(4 + query.size());
    } else if (kind == 'U' || kind == 'V') {
        challenge = request.substr(5);
    } else {
        return {};
    }
    if (challenge != A2SChallenge()) return {kOob + "A" + A2SChallenge()};
    if (kind == 'T') return {Info(state, gamePort)};
    if (kind == 'U') return {Players(state)};
    return Split(Rules(state));
}

} // namespace tallybot::gamesim
