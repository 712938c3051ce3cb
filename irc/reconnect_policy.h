#pragma once
// When to try again after the connection was lost without the operator asking: the first attempt
// 10 s after the loss, each further pause twice the last up to 300 s, and never two attempts
// within 10 s. A connection the server accepted starts the pauses again from 10 s. Time is
// passed in (milliseconds of a monotonic clock).

#include <cstdint>
#include <optional>

namespace tallybot::irc {

class ReconnectPolicy {
public:
    static constexpr std::uint64_t kFirstPauseMs = 10'000;
    static constexpr std::uint64_t kLongestPauseMs = 300'000;
    static constexpr std::uint64_t kMinSpacingMs = 10'000;

    // The connection was lost at nowMs; returns when the next attempt is due.
    std::uint64_t ConnectionLost(std::uint64_t nowMs);
    bool Due(std::uint64_t nowMs) const { return m_pending && nowMs >= *m_pending; }
    std::optional<std::uint64_t> NextAttemptMs() const { return m_pending; }
    // An attempt starts now; nothing is pending until the next loss.
    void Attempting(std::uint64_t nowMs);
    // The server accepted the registration.
    void Registered() { m_pause = kFirstPauseMs; }
    // The operator connected or disconnected: nothing pending, pauses from the start.
    void Cancel();

private:
    std::uint64_t m_pause = kFirstPauseMs;
    std::optional<std::uint64_t> m_lastAttempt;
    std::optional<std::uint64_t> m_pending;
};

} // namespace tallybot::irc
