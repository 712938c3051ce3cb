// Engine detection and name cleaning on arbitrary first replies.

#include "query/game_state.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tallybot::query;
    std::string_view reply(reinterpret_cast<const char*>(data), size);
    for (int before : {kEngineUnknown, kEnginePending}) {
        GameState state;
        state.EngineId = before;
        DetectEngine(reply, state);
        if (EngineCode(state.EngineId).empty() && state.EngineId != before && state.EngineId != kEnginePending)
            __builtin_trap(); // detection settles on a known engine or leaves it as it was
    }
    std::string name = ClearName(reply);
    if (name.size() > reply.size()) __builtin_trap();
    return 0;
}
