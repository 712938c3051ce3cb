#include "query/query_extras.h"

#include "base/extras_settings.h"
#include "query/byte_reader.h"
#include "query/darkplaces_reply.h"

#include <array>

namespace tallybot::query {

namespace {

using namespace std::string_view_literals;

// How the forks begin their version string (Q3_VERSION: product name, blank, version), upper-cased:
//   "ioq3 1.36_GIT_f2c61c1-2024-01-01 linux-x86_64 ..."   ioquake3
//   "ioq3+oa 1.36_SVN..."                                  OpenArena's engine
//   "ioq3 1.35 urt 4.3.4 linux-x86_64 ..."                Urban Terror 4.x
//   "ioq3-urt 4.2..." and "ioq3_r..." builds               Urban Terror and other ioq3 rebuilds
//   "ioquake3 ..."                                         packaged ioquake3 builds
//   "Q3e ..." / "Quake3e ..."                              Quake3e ("Q3 1.32e" is Q3 anyway)
//   "CNQ3 1.53 ..."                                        CNQ3
constexpr std::array kForkPrefixes = {"IOQ3"sv, "IOQUAKE3"sv, "QUAKE3E"sv, "Q3E"sv, "CNQ3"sv};

bool StartsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

// The "\version" value as the classic detection reads it: 9 characters after the key's start
// up to the next "\".
std::string VersionValue(std::string_view reply) {
    const std::size_t pos = reply.find("\\version");
    if (pos == std::string_view::npos || pos + 9 >= reply.size()) return {};
    std::string_view rest = reply.substr(pos + 9);
    return UpperAscii(rest.substr(0, rest.find('\\')));
}

} // namespace

QueryExtras QueryExtrasOf(const base::ExtrasSettings& extras) {
    return {extras.ModernQuake3 == 1, extras.A2SQuery == 1, extras.IPv6 == 1, extras.QueryRetry == 1};
}

bool IsModernQuake3Version(std::string_view upperVersion) {
    for (std::string_view prefix : kForkPrefixes)
        if (StartsWith(upperVersion, prefix)) return true;
    return false;
}

std::string PresentDayEngineNeedingSwitch(std::string_view reply, int detectedEngineId) {
    if (detectedEngineId == kEngineQ2 && IsModernQuake3Version(VersionValue(reply))) {
        std::string_view version = reply.substr(reply.find("\\version") + 9);
        return std::string(version.substr(0, version.find('\\'))) + ", an ioquake3-family engine";
    }
    if (detectedEngineId == kEngineCoD && IsDarkPlacesReply(reply))
        return DarkPlacesGameName(reply) + ", a DarkPlaces engine";
    return {};
}

bool IsA2SReply(std::string_view reply) {
    if (StartsWith(reply, "\xFF\xFF\xFF\xFE"sv)) return reply.size() > 12; // split: header, id, counts
    if (!StartsWith(reply, "\xFF\xFF\xFF\xFF"sv) || reply.size() < 6) return false;
    if (reply[4] == 'A') return reply.size() == 9; // S2C_CHALLENGE and its four bytes
    return reply[4] == 'I';
}

void DetectEngineWithExtras(std::string_view reply, GameState& state, const QueryExtras& extras) {
    if (extras.A2SQuery && IsA2SReply(reply)) {
        state.EngineId = kEngineA2S;
        return;
    }
    DetectEngine(reply, state);
    // Only the "\version" step ends in Quake 2, so a Q2 result always has a version to look at.
    if (extras.ModernQuake3 && state.EngineId == kEngineQ2 && IsModernQuake3Version(VersionValue(reply)))
        state.EngineId = kEngineQ3;
    // DarkPlaces sends no "\version", so the classic fallback took it for CoD.
    if (extras.ModernQuake3 && state.EngineId == kEngineCoD && IsDarkPlacesReply(reply)) state.EngineId = kEngineQ3;
}

std::string EngineCodeWithExtras(int engineId, const QueryExtras& extras) {
    if (engineId == kEngineA2S && extras.A2SQuery) return "A2S";
    return EngineCode(engineId);
}

} // namespace tallybot::query
