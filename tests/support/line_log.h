#pragma once
// The received side of a test peer: bytes in, lines out, and waiting for a line by pattern.
//
// Feed() splits at LF and drops one CR before it; the unterminated tail waits for the next Feed(). Every
// line is kept. WaitFor(pattern) runs the Qt event loop until a line not yet consumed matches the
// Perl-style regex (QRegularExpression, over the bytes read as Latin-1), consumes the lines up to and
// including it and returns it, or std::nullopt after the deadline; skipped lines stay in Lines() and
// Transcript() for failure messages. Used by IrcTestClient and FakeIrcServer, and by any test that reads a
// line protocol from a socket.

#include "tests/support/qt_wait.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallybot::testsupport {

class LineLog {
public:
    // Returns the complete lines this call added, in order.
    std::vector<std::string> Feed(std::string_view bytes);
    std::optional<std::string> WaitFor(const std::string& pattern,
                                       std::chrono::milliseconds deadline = kDefaultDeadline);
    // True when a line not yet consumed matches; consumes nothing.
    bool Pending(const std::string& pattern) const;

    const std::vector<std::string>& Lines() const { return m_lines; }
    std::string Transcript() const;
    void Clear();

private:
    std::string m_carry;
    std::vector<std::string> m_lines;
    std::size_t m_consumed = 0;
};

// The text quoted so that a regex matches it literally ("#chan.x" -> "#chan\.x").
std::string RegexQuote(std::string_view text);

} // namespace tallybot::testsupport
