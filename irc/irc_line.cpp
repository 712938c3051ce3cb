#include "irc/irc_line.h"

namespace tallybot::irc {

bool IrcLine::FullPrefix() const {
    return HasPrefix && Prefix.find('!') != std::string::npos && Prefix.find('@') != std::string::npos;
}

bool IsNumericWord(std::string_view word) {
    if (word.empty() || word.size() > 3) return false;
    for (char c : word) {
        if (c < '0' || c > '9') return false;
    }
    return true;
}

IrcLine ParseIrcLine(std::string_view line, bool afterPrefix) {
    IrcLine l;
    if (line.size() >= 2 && line.substr(line.size() - 2) == "\r\n") line.remove_suffix(2);
    l.Text = std::string(line);
    if (line.empty()) return l;

    std::size_t pos = 0;
    for (int k = 1; k <= IrcLine::kWords && pos <= line.size(); ++k) {
        const auto blank = line.find(' ', pos);
        const auto end = blank == std::string_view::npos ? line.size() : blank;
        l.W[static_cast<std::size_t>(k)] = std::string(line.substr(pos, end - pos));
        if (blank == std::string_view::npos) break;
        pos = blank + 1;
    }

    // A word other than the first that begins with a colon makes the rest after the first colon
    // past position 1 the trailing text.
    if (afterPrefix) {
        const auto prefixEnd = line.front() == ':' ? line.find(' ') : 0;
        const auto start = prefixEnd == std::string_view::npos ? prefixEnd : line.find(" :", prefixEnd);
        if (start != std::string_view::npos) l.Trailing = std::string(line.substr(start + 2));
    } else if (line.find(" :") != std::string_view::npos) {
        const auto colon = line.find(':', 1);
        l.Trailing = std::string(line.substr(colon + 1));
    }

    if (line.front() == ':') {
        l.HasPrefix = true;
        l.Prefix = l.W[1].substr(1);
        const auto bang = l.Prefix.find('!');
        if (bang != std::string::npos) {
            l.Nick = l.Prefix.substr(0, bang);
            const std::string rest = l.Prefix.substr(bang + 1);
            const auto at = rest.find('@');
            l.User = rest.substr(0, at);
            if (at != std::string::npos) l.Host = rest.substr(at + 1);
        }
    }
    return l;
}

} // namespace tallybot::irc
