#pragma once
// Paced sending: outgoing lines pass a token bucket (a burst of five, then one line every two
// seconds) so that a long teams post never trips the server's flood limit. PONG and QUIT go out
// at once; CTCP answers (a NOTICE whose text opens with character 1) are also capped at five per
// five seconds, and the rest are dropped, so a CTCP flood cannot fill the queue. Time is passed in.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallybot::irc {

class SendQueue {
public:
    struct Limits {
        int Burst = 5;
        std::uint64_t IntervalMs = 2000;
        int CtcpAnswers = 5;
        std::uint64_t CtcpWindowMs = 5000;
        std::size_t MaxQueued = 200; // beyond this new lines are dropped: the link is hopeless anyway
    };

    SendQueue() : SendQueue(Limits{}) {}
    explicit SendQueue(Limits limits);

    // A wire line (CR LF included) offered at nowMs; returns what may be written now, in order.
    std::vector<std::string> Offer(std::string line, std::uint64_t nowMs);
    // Queued lines whose turn has come.
    std::vector<std::string> Due(std::uint64_t nowMs);
    // When the next queued line may go; nothing while the queue is empty.
    std::optional<std::uint64_t> NextDueMs() const;
    std::size_t Queued() const { return m_queue.size(); }
    std::size_t Dropped() const { return m_dropped; }
    // A new connection: the queue is emptied and the burst is full again.
    void Reset();

    static bool Bypasses(std::string_view line); // PONG, QUIT
    static bool IsCtcpAnswer(std::string_view line);

private:
    void Refill(std::uint64_t nowMs);
    bool TakeToken(std::uint64_t nowMs);

    Limits m_limits;
    int m_tokens;
    std::uint64_t m_refillAt = 0; // when the next token arrives (meaningful while the bucket is not full)
    std::deque<std::string> m_queue;
    std::deque<std::uint64_t> m_ctcpTimes;
    std::size_t m_dropped = 0;
};

} // namespace tallybot::irc
