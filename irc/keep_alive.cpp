#include "irc/keep_alive.h"

#include <algorithm>

namespace tallybot::irc {

KeepAlive::Action KeepAlive::Check(std::uint64_t nowMs) {
    if (nowMs - m_lastTraffic >= kDeadAfterMs) return Action::Dead;
    if (nowMs - m_lastPing >= kPingAfterMs) {
        m_lastPing = nowMs;
        return Action::SendPing;
    }
    return Action::None;
}

std::uint64_t KeepAlive::NextCheckMs() const {
    return std::min(m_lastPing + kPingAfterMs, m_lastTraffic + kDeadAfterMs);
}

} // namespace tallybot::irc
