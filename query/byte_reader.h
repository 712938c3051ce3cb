#pragma once
// A forward-only cursor over a binary reply. Every read is bounds-checked: skips stop at the end,
// a text without its 0x00 runs to the end (the ExtractString rule), and asking for the code of a
// byte that is not there throws the "Invalid procedure call" error the parsers' traps absorb.

#include "base/vb_convert.h"
#include "query/game_state.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tallybot::query {

inline vb::VbError InvalidCall() {
    return vb::VbError(vb::kInvalidCall, "Invalid procedure call or argument");
}

// Code of the first byte of a field; an empty field has none.
inline std::uint8_t FirstCode(std::string_view field) {
    if (field.empty()) throw InvalidCall();
    return static_cast<std::uint8_t>(field.front());
}

inline std::string LowerAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

inline std::string UpperAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

// The player slot n; outside 0..50 it is the index error of the fixed table.
inline PlayerStatus& Slot(PlayerTable& table, long long n) {
    if (n < 0 || n > kMaxPlayers) throw vb::SubscriptOutOfRange();
    return table[static_cast<std::size_t>(n)];
}

class ByteReader {
public:
    explicit ByteReader(std::string_view data) : m_rest(data) {}

    std::size_t Remaining() const { return m_rest.size(); }
    bool Empty() const { return m_rest.empty(); }
    std::string_view Rest() const { return m_rest; }
    bool StartsWith(std::string_view prefix) const { return m_rest.substr(0, prefix.size()) == prefix; }

    void Skip(std::size_t count) { m_rest.remove_prefix(std::min(count, m_rest.size())); }

    // Up to count bytes; fewer at the end of the reply.
    std::string_view Take(std::size_t count) {
        std::string_view part = m_rest.substr(0, std::min(count, m_rest.size()));
        m_rest.remove_prefix(part.size());
        return part;
    }

    // The text up to the delimiter, which is consumed too; without it, the rest of the reply.
    std::string_view Text(char delimiter = '\0') {
        std::size_t end = m_rest.find(delimiter);
        if (end == std::string_view::npos) {
            std::string_view text = m_rest;
            m_rest = {};
            return text;
        }
        std::string_view text = m_rest.substr(0, end);
        m_rest.remove_prefix(end + 1);
        return text;
    }

    // Code of the next byte, consumed; throws at the end of the reply.
    std::uint8_t Code() { return FirstCode(Take(1)); }

private:
    std::string_view m_rest;
};

} // namespace tallybot::query
