#include "irc/irc_framing.h"

#include <algorithm>

namespace tallybot::irc {

LineFramer::Result LineFramer::Feed(std::string_view bytes) {
    Result result;
    m_carry.append(bytes);
    std::size_t base = 0; // start of the unconsumed buffer
    std::size_t i = 0;    // scan offset within it; the first arrival's first character is examined
    while (base + i < m_carry.size()) {
        const char c = m_carry[base + i];
        if (c != '\n' && c != '\r') {
            ++i;
            continue;
        }
        // The line takes the separator and the character after it.
        const std::size_t length = std::min(i + 2, m_carry.size() - base);
        result.Lines.emplace_back(m_carry, base, length);
        base += length;
        if (result.Lines.size() >= kLineTable) {
            result.Lines.clear();
            result.Overflow = true;
            break;
        }
        i = 1; // the first character after a cut is never a separator
    }
    m_carry.erase(0, base);
    if (m_carry.size() > kCarryLimit) m_carry.clear();
    return result;
}

} // namespace tallybot::irc
