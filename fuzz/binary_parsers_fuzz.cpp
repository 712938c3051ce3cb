// The GameSpy, Half-Life, FarCry, UT2003 and Doom 3 parsers on arbitrary bytes. The first byte
// picks the parser and the profile flags; the rest is the reply, parsed twice so the second parse
// starts from what the first left.

#include "query/parsers.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tallybot::query;
    using Parser = void (*)(std::string_view, GameState&, const tallybot::profiles::GameProfile&);
    static constexpr Parser kParsers[] = {ParseGameSpy, ParseHLReply, ParseFCReply, ParseUT2003Reply,
                                          ParseD3EngineData};
    if (size == 0) return 0;
    const uint8_t selector = data[0];
    const Parser parse = kParsers[selector % (sizeof kParsers / sizeof kParsers[0])];
    std::string_view reply(reinterpret_cast<const char*>(data + 1), size - 1);

    tallybot::profiles::GameProfile profile;
    profile.Advanced = (selector >> 3) & 1;
    profile.AutoTeams = (selector >> 4) & 1;
    profile.Scoring = (selector >> 5) & 1;
    GameState state;
    state.GameColoursToIrc = (selector >> 6) & 1; // UT2003 and Doom 3 names coloured for IRC
    for (int round = 0; round < 2; ++round) {
        parse(reply, state, profile);
        if (state.Players[0] != PlayerStatus{}) __builtin_trap(); // players start at slot 1
        // Only GameSpy and FarCry take the count from the reply; the others count what they read.
        if (parse != ParseGameSpy && parse != ParseFCReply &&
            (state.Status.NumPlayers < 0 || state.Status.NumPlayers > kMaxPlayers))
            __builtin_trap();
    }
    return 0;
}
