#include "irc/sasl_exchange.h"

#include "irc/irc_line.h"

#include <sstream>

namespace tallybot::irc {

namespace {

constexpr std::size_t kChunk = 400; // AUTHENTICATE carries at most 400 bytes of base64 per line

std::string Upper(std::string_view s) {
    std::string out(s);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

bool OffersSasl(const std::string& caps, const std::string& mechanism) {
    std::istringstream words(caps);
    std::string cap;
    while (words >> cap) {
        if (cap == "sasl") return true;
        if (cap.rfind("sasl=", 0) == 0) {
            // sasl=PLAIN,EXTERNAL: the list names what the server takes.
            std::string list = "," + Upper(cap.substr(5)) + ",";
            return list.find("," + mechanism + ",") != std::string::npos;
        }
    }
    return false;
}

} // namespace

SaslExchange::SaslExchange(SaslSettings settings) : m_settings(std::move(settings)) {
    m_settings.Mechanism = Upper(m_settings.Mechanism);
}

bool SaslExchange::Enabled() const {
    return m_settings.Mechanism == "PLAIN" || m_settings.Mechanism == "EXTERNAL";
}

std::vector<std::string> SaslExchange::Start() {
    m_offered.clear();
    if (!Enabled()) {
        m_state = State::Idle;
        return {};
    }
    m_state = State::Listing;
    return {"CAP LS 302"};
}

SaslExchange::Step SaslExchange::Finish(std::string note, bool failed) {
    m_state = State::Done;
    return Step{{"CAP END"}, std::move(note), failed};
}

SaslExchange::Step SaslExchange::Credentials() const {
    if (m_settings.Mechanism == "EXTERNAL") return Step{{"AUTHENTICATE +"}, {}, false};
    const std::string& user = m_settings.User;
    const std::string encoded = Base64(user + '\0' + user + '\0' + m_settings.Password);
    Step step;
    for (std::size_t at = 0; at < encoded.size(); at += kChunk)
        step.Send.push_back("AUTHENTICATE " + encoded.substr(at, kChunk));
    // A last piece of exactly 400 bytes is followed by an empty one, so the server knows it ended.
    if (encoded.size() % kChunk == 0) step.Send.push_back("AUTHENTICATE +");
    return step;
}

SaslExchange::Step SaslExchange::OnLine(const IrcLine& l) {
    if (!Active()) return {};
    // Commands come after a prefix as word 2, or as word 1 without one.
    const std::string& command = l.HasPrefix ? l.W[2] : l.W[1];
    if (command == "CAP") {
        const std::string sub = Upper(l.HasPrefix ? l.W[4] : l.W[3]);
        const bool more = (l.HasPrefix ? l.W[5] : l.W[4]) == "*";
        if (sub == "LS" && m_state == State::Listing) {
            m_offered += " " + l.Trailing;
            if (more) return {};
            if (!OffersSasl(m_offered, m_settings.Mechanism))
                return Finish("SASL " + m_settings.Mechanism + " is not offered by the server", true);
            m_state = State::Requested;
            return Step{{"CAP REQ :sasl"}, {}, false};
        }
        if (sub == "ACK" && m_state == State::Requested) {
            m_state = State::Authenticating;
            return Step{{"AUTHENTICATE " + m_settings.Mechanism}, {}, false};
        }
        if (sub == "NAK" && m_state == State::Requested) return Finish("SASL refused by the server", true);
        return {};
    }
    if (command == "AUTHENTICATE" && m_state == State::Authenticating) {
        if ((l.HasPrefix ? l.W[3] : l.W[2]) == "+") return Credentials();
        return {};
    }
    if (!IsNumericWord(l.W[2])) return {};
    const int numeric = std::stoi(l.W[2]);
    switch (numeric) {
    case 903:
        return Finish("SASL authentication successful", false);
    case 907:
        return Finish("SASL: already authenticated", false);
    case 902:
    case 904:
    case 905:
    case 906:
        return Finish("SASL authentication failed: " + l.Trailing, true);
    case 1:
        m_state = State::Done; // registered without ever negotiating: nothing to end
        return {};
    case 421:
        if (l.W[4] == "CAP") return Finish("SASL: the server knows no CAP", true);
        return {};
    default:
        return {};
    }
}

std::string SaslExchange::Base64(std::string_view bytes) {
    static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        const unsigned v = static_cast<unsigned char>(bytes[i]) << 16 | static_cast<unsigned char>(bytes[i + 1]) << 8 |
                           static_cast<unsigned char>(bytes[i + 2]);
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += kAlphabet[(v >> 6) & 63];
        out += kAlphabet[v & 63];
    }
    if (i < bytes.size()) {
        unsigned v = static_cast<unsigned char>(bytes[i]) << 16;
        if (i + 1 < bytes.size()) v |= static_cast<unsigned char>(bytes[i + 1]) << 8;
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += i + 1 < bytes.size() ? kAlphabet[(v >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

} // namespace tallybot::irc
