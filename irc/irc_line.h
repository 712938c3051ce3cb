#pragma once
// One server line split the control's way:
//   [":" prefix " "] command " " params... [" :" trailing] CR LF
// into at most ten words split at single blanks (word 1 is the prefix with its colon when there
// is one), the trailing text (after the first colon at or after position 2, when a later word
// begins with a colon) and the prefix's nick, user and host.

#include <array>
#include <string>
#include <string_view>

namespace tallybot::irc {

struct IrcLine {
    static constexpr int kWords = 10;
    std::string Text;                        // the line without its CR LF
    std::array<std::string, kWords + 1> W{}; // W[1]..W[10]; W[0] unused
    std::string Trailing;
    bool HasPrefix = false;
    std::string Prefix; // without the colon
    std::string Nick;   // empty for a server prefix
    std::string User;
    std::string Host;
    bool operator==(const IrcLine&) const = default;

    bool FullPrefix() const; // nick!user@host
};

// afterPrefix (TrailingAfterPrefix): the trailing text starts at the first " :" after the
// prefix, so a host such as 2001:db8::7 in the prefix does not cut it short.
IrcLine ParseIrcLine(std::string_view line, bool afterPrefix = false);

// Word 2 of a numeric reply: one to three digits.
bool IsNumericWord(std::string_view word);

} // namespace tallybot::irc
