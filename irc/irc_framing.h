#pragma once
// Receive framing of the server connection. The carry buffer holds the unterminated tail of the
// last arrival; each arrival is scanned carry first. A separator (CR or LF) cuts the line after
// the character that follows it, so CR LF stays with its line, and the scan goes on at the
// second character of what is left.

#include <string>
#include <string_view>
#include <vector>

namespace tallybot::irc {

class LineFramer {
public:
    // One arrival yielding this many lines is the line table's overflow, a reported fault.
    static constexpr std::size_t kLineTable = 400;
    // An unterminated tail longer than this is dropped: no server line comes near it.
    static constexpr std::size_t kCarryLimit = 16 * 1024;

    struct Result {
        std::vector<std::string> Lines; // complete lines in order, separators kept
        bool Overflow = false;          // the arrival filled the line table; Lines is empty
    };

    Result Feed(std::string_view bytes);
    const std::string& Carry() const { return m_carry; }

private:
    std::string m_carry;
};

} // namespace tallybot::irc
