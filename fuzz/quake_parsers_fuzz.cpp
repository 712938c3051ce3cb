// Every Quake-family entry through the dispatcher, with each combination of the profile flags
// that steer them. The first byte picks the engine and the flags, so one input covers all. A reply
// is also read through the DarkPlaces rewrite of ModernQuake3.

#include "query/darkplaces_reply.h"
#include "query/parsers.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tallybot::query;
    static constexpr int kEngines[] = {kEngineQ2,  kEngineQ3, kEngineRTCW, kEngineEF,  kEngineJK2, kEngineSoF2,
                                       kEngineMoH, kEngineET, kEngineJA,   kEngineCoD, kEngineEF2};
    if (size == 0) return 0;
    const uint8_t selector = data[0];
    std::string_view reply(reinterpret_cast<const char*>(data + 1), size - 1);

    tallybot::profiles::GameProfile profile;
    profile.Advanced = selector & 1;
    profile.AutoTeams = (selector >> 1) & 1;
    profile.Scoring = (selector >> 2) & 1;
    GameState state;
    state.EngineId = kEngines[(selector >> 3) % (sizeof kEngines / sizeof kEngines[0])];
    state.Players[3].Team = 1; // as after a manual assignment
    state.Players[4].Flag = 7;
    for (int round = 0; round < 2; ++round) { // the second parse starts from the state of the first
        state.GameColoursToIrc = round == 1;  // names cleaned once, then coloured for IRC
        ParseEngineReply(state.EngineId, reply, state, profile);
        if (state.Status.NumPlayers < 0 || state.Status.NumPlayers > kMaxPlayers) __builtin_trap();
    }
    // The DarkPlaces rewrite takes any bytes (the cycle only hands it DarkPlaces replies).
    const std::string asQuake3 = DarkPlacesAsQuake3(reply);
    if (asQuake3.size() > 4 * reply.size() + 64) __builtin_trap(); // bounded by the input
    ParseEngineReply(kEngineQ3, asQuake3, state, profile);
    if (state.Status.NumPlayers < 0 || state.Status.NumPlayers > kMaxPlayers) __builtin_trap();
    return 0;
}
