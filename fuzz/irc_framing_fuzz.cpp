// Receive framing: arbitrary bytes in arbitrary chunks. Nothing is lost or invented: the lines
// handed out plus the carry are exactly the bytes fed, unless the line table overflowed or the
// carry limit dropped a tail; the carry never exceeds its bound.

#include "irc/irc_framing.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

using tallybot::irc::LineFramer;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    // The first byte chooses the chunk size, as reads of different lengths would.
    const std::size_t chunk = 1 + data[0] % 64;
    const std::string input(reinterpret_cast<const char*>(data + 1), size - 1);

    LineFramer framer;
    std::string out;
    bool lossy = false;
    for (std::size_t pos = 0; pos < input.size(); pos += chunk) {
        const std::string piece = input.substr(pos, chunk);
        const std::size_t carryBefore = framer.Carry().size();
        auto r = framer.Feed(piece);
        if (r.Overflow || carryBefore + piece.size() > LineFramer::kCarryLimit) lossy = true;
        for (const auto& line : r.Lines) {
            if (line.empty()) std::abort();
            out += line;
        }
        if (framer.Carry().size() > LineFramer::kCarryLimit) std::abort();
    }
    if (!lossy && out + framer.Carry() != input) std::abort();
    return 0;
}
