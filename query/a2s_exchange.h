#pragma once
// The A2S request side: the three requests of a round (info, players, rules, like Half-Life's
// sub-queries), the challenge a server hands out before it answers, and split reassembly.
//   A2S_INFO    FF FF FF FF 'T' "Source Engine Query" 00 [challenge (4)]
//   A2S_PLAYER  FF FF FF FF 'U' challenge (4; FF FF FF FF asks for one)
//   A2S_RULES   FF FF FF FF 'V' challenge (4)
//   S2C_CHALLENGE FF FF FF FF 'A' challenge (4): send the same request again with it
// A server that keeps answering with challenges gets at most kMaxA2SResends repeats per request.

#include "query/a2s_assembly.h"

#include <optional>
#include <string>
#include <string_view>

namespace tallybot::query {

inline constexpr int kMaxA2SResends = 2;

// The request of one step (0 info, 1 players, 2 rules) carrying the given challenge; an info
// request without a challenge (FF FF FF FF) goes out without one.
std::string BuildA2SQuery(int step, std::string_view challenge);

class A2SExchange {
public:
    struct Outcome {
        std::optional<std::string> reply;  // a whole reply for the parser
        std::optional<std::string> resend; // the request to send again at once
        bool operator==(const Outcome&) const = default;
    };

    // The request of a round; advances queryStep (0, 1, 2, 0, ...).
    std::string NextRequest(int& queryStep);
    // The info request of a probe round; leaves the step counter alone.
    std::string ProbeRequest();
    Outcome Receive(std::string_view datagram);
    void Reset();
    const std::string& Challenge() const { return m_challenge; }

private:
    std::string Request(int step);

    std::string m_challenge = std::string(4, '\xFF');
    int m_lastStep = 0;
    int m_resends = 0;
    A2SAssembly m_assembly;
};

} // namespace tallybot::query
