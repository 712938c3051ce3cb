#pragma once
// Watching a quiet link: after 120 s without a byte from the server a PING goes out (again every
// 120 s of silence); after 300 s without any byte the connection counts as dead. Time is passed
// in (milliseconds of a monotonic clock).

#include <cstdint>

namespace tallybot::irc {

class KeepAlive {
public:
    static constexpr std::uint64_t kPingAfterMs = 120'000;
    static constexpr std::uint64_t kDeadAfterMs = 300'000;

    enum class Action { None, SendPing, Dead };

    // The connection opened, or bytes arrived.
    void Traffic(std::uint64_t nowMs) { m_lastTraffic = m_lastPing = nowMs; }
    Action Check(std::uint64_t nowMs);
    std::uint64_t NextCheckMs() const;

private:
    std::uint64_t m_lastTraffic = 0;
    std::uint64_t m_lastPing = 0;
};

} // namespace tallybot::irc
