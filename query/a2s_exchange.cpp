#include "query/a2s_exchange.h"

namespace tallybot::query {

namespace {

using namespace std::string_literals;

const std::string kNoChallenge = "\xFF\xFF\xFF\xFF"s;

} // namespace

std::string BuildA2SQuery(int step, std::string_view challenge) {
    switch (step) {
    case 0: {
        std::string packet = "\xFF\xFF\xFF\xFFTSource Engine Query\0"s;
        if (challenge != kNoChallenge) packet += challenge;
        return packet;
    }
    case 1:
        return "\xFF\xFF\xFF\xFFU"s + std::string(challenge);
    default:
        return "\xFF\xFF\xFF\xFFV"s + std::string(challenge);
    }
}

std::string A2SExchange::NextRequest(int& queryStep) {
    const int step = queryStep;
    queryStep = (step + 1) % 3;
    m_resends = 0;
    return Request(step);
}

std::string A2SExchange::ProbeRequest() {
    m_resends = 0;
    return Request(0);
}

std::string A2SExchange::Request(int step) {
    m_lastStep = step;
    return BuildA2SQuery(step, m_challenge);
}

A2SExchange::Outcome A2SExchange::Receive(std::string_view datagram) {
    std::optional<std::string> whole = m_assembly.Add(datagram);
    if (!whole) return {};
    if (whole->size() == 9 && (*whole)[4] == 'A') {
        m_challenge = whole->substr(5, 4);
        if (m_resends >= kMaxA2SResends) return {};
        ++m_resends;
        return {std::nullopt, Request(m_lastStep)};
    }
    return {std::move(whole), std::nullopt};
}

void A2SExchange::Reset() {
    m_challenge = kNoChallenge;
    m_lastStep = 0;
    m_resends = 0;
    m_assembly.Reset();
}

} // namespace tallybot::query
