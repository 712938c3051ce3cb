#include "irc/reconnect_policy.h"

#include <algorithm>

namespace tallybot::irc {

std::uint64_t ReconnectPolicy::ConnectionLost(std::uint64_t nowMs) {
    std::uint64_t at = nowMs + m_pause;
    if (m_lastAttempt) at = std::max(at, *m_lastAttempt + kMinSpacingMs);
    m_pending = at;
    m_pause = std::min(m_pause * 2, kLongestPauseMs);
    return at;
}

void ReconnectPolicy::Attempting(std::uint64_t nowMs) {
    m_lastAttempt = nowMs;
    m_pending.reset();
}

void ReconnectPolicy::Cancel() {
    m_pending.reset();
    m_pause = kFirstPauseMs;
}

} // namespace tallybot::irc
