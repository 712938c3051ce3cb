#include "irc/send_queue.h"

#include <cctype>

namespace tallybot::irc {

namespace {

bool CommandIs(std::string_view line, std::string_view command) {
    if (line.size() < command.size()) return false;
    for (std::size_t i = 0; i < command.size(); ++i) {
        if (std::toupper(static_cast<unsigned char>(line[i])) != command[i]) return false;
    }
    return line.size() == command.size() || line[command.size()] == ' ' || line[command.size()] == '\r';
}

} // namespace

SendQueue::SendQueue(Limits limits) : m_limits(limits), m_tokens(limits.Burst) {}

bool SendQueue::Bypasses(std::string_view line) {
    return CommandIs(line, "PONG") || CommandIs(line, "QUIT");
}

bool SendQueue::IsCtcpAnswer(std::string_view line) {
    if (!CommandIs(line, "NOTICE")) return false;
    const auto colon = line.find(" :");
    return colon != std::string_view::npos && colon + 2 < line.size() && line[colon + 2] == '\x01';
}

void SendQueue::Reset() {
    m_queue.clear();
    m_ctcpTimes.clear();
    m_tokens = m_limits.Burst;
}

void SendQueue::Refill(std::uint64_t nowMs) {
    while (m_tokens < m_limits.Burst && nowMs >= m_refillAt) {
        ++m_tokens;
        m_refillAt += m_limits.IntervalMs;
    }
}

bool SendQueue::TakeToken(std::uint64_t nowMs) {
    Refill(nowMs);
    if (m_tokens <= 0) return false;
    // The refill clock starts with the first token taken from a full bucket.
    if (m_tokens == m_limits.Burst) m_refillAt = nowMs + m_limits.IntervalMs;
    --m_tokens;
    return true;
}

std::vector<std::string> SendQueue::Offer(std::string line, std::uint64_t nowMs) {
    if (Bypasses(line)) return {std::move(line)};
    if (IsCtcpAnswer(line)) {
        while (!m_ctcpTimes.empty() && nowMs - m_ctcpTimes.front() >= m_limits.CtcpWindowMs)
            m_ctcpTimes.pop_front();
        if (m_ctcpTimes.size() >= static_cast<std::size_t>(m_limits.CtcpAnswers)) {
            ++m_dropped;
            return {};
        }
        m_ctcpTimes.push_back(nowMs);
    }
    if (m_queue.empty() && TakeToken(nowMs)) return {std::move(line)};
    if (m_queue.size() >= m_limits.MaxQueued) {
        ++m_dropped;
        return {};
    }
    m_queue.push_back(std::move(line));
    return {};
}

std::vector<std::string> SendQueue::Due(std::uint64_t nowMs) {
    std::vector<std::string> out;
    while (!m_queue.empty() && TakeToken(nowMs)) {
        out.push_back(std::move(m_queue.front()));
        m_queue.pop_front();
    }
    return out;
}

std::optional<std::uint64_t> SendQueue::NextDueMs() const {
    if (m_queue.empty()) return std::nullopt;
    return m_refillAt;
}

} // namespace tallybot::irc
