#pragma once
// The query additions switched on in [Extras]: recognition of present-day Quake 3 engine forks,
// the A2S query of Source and current Half-Life servers (engine 18, "A2S"), and IPv6 server
// addresses. With every switch off each function here behaves exactly like the classic one.

#include "query/game_state.h"

#include <string>
#include <string_view>

namespace tallybot::base {
struct ExtrasSettings;
}

namespace tallybot::query {

// The engine the A2S query adds; it exists only while A2SQuery is on.
constexpr int kEngineA2S = 18;

// The query side's view of the [Extras] switches (each on only when its value is exactly 1).
struct QueryExtras {
    bool ModernQuake3 = false;
    bool A2SQuery = false;
    bool IPv6 = false;
    bool QueryRetry = false; // probe a silent server again instead of stopping

    bool operator==(const QueryExtras&) const = default;
};

QueryExtras QueryExtrasOf(const base::ExtrasSettings& extras);

// True when an upper-cased version text names a present-day Quake 3 engine fork (ioquake3 and
// the engines built on it, Quake3e, CNQ3).
bool IsModernQuake3Version(std::string_view upperVersion);

// When a reply detected without ModernQuake3 comes from a present-day engine that needs the switch
// (an ioquake3 fork taken for Quake 2, a DarkPlaces server taken for CoD), the engine as the
// operator should read it ("ioq3 1.36 linux-x86_64, an ioquake3-family engine"); else empty.
std::string PresentDayEngineNeedingSwitch(std::string_view reply, int detectedEngineId);

// True for the replies only an A2S server sends: S2C_CHALLENGE, A2S_INFO's answer, split packets.
bool IsA2SReply(std::string_view reply);

// DetectEngine, then the additions: an A2S reply is engine 18, a "\version" that names a Quake 3
// fork is Q3 instead of the Quake 2 fallback, and a DarkPlaces reply is Q3 instead of CoD.
void DetectEngineWithExtras(std::string_view reply, GameState& state, const QueryExtras& extras);

// EngineCode, plus "A2S" for engine 18 while the A2S query is on.
std::string EngineCodeWithExtras(int engineId, const QueryExtras& extras);

} // namespace tallybot::query
