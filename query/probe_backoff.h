#pragma once
// QueryRetry: after ten silent rounds the query does not stop but probes the server, first after
// 30 s, then after twice the previous pause, at most every 10 minutes, until it answers. The pause
// is the query timer's interval, so the cycle stays a state machine driven by its ticks alone.

namespace tallybot::query {

class ProbeBackoff {
public:
    static constexpr int kFirstPauseMs = 30'000;
    static constexpr int kLongestPauseMs = 600'000;

    bool Probing() const { return m_pauseMs > 0; }
    // The server fell silent: the pause before the first probe.
    int Begin() { return m_pauseMs = kFirstPauseMs; }
    // A probe goes out: the pause before the next one, should this one stay unanswered too.
    int Next() { return m_pauseMs = m_pauseMs >= kLongestPauseMs / 2 ? kLongestPauseMs : m_pauseMs * 2; }
    void End() { m_pauseMs = 0; }

private:
    int m_pauseMs = 0;
};

} // namespace tallybot::query
