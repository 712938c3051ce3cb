#include "irc/pane_words.h"

#include <cctype>

namespace tallybot::irc {

namespace {

bool IsBoundary(char c) {
    switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
    case ',':
    case '(':
    case ')':
    case '[':
    case ']':
    case '{':
    case '}':
    case '\'':
        return true;
    default:
        return false;
    }
}

bool StartsWith(std::string_view s, std::string_view p) {
    return s.substr(0, p.size()) == p;
}
bool EndsWith(std::string_view s, std::string_view p) {
    return s.size() >= p.size() && s.substr(s.size() - p.size()) == p;
}

} // namespace

std::string WordAt(std::string_view text, std::size_t pos) {
    if (pos >= text.size() || IsBoundary(text[pos])) return {};
    std::size_t begin = pos;
    while (begin > 0 && !IsBoundary(text[begin - 1]))
        --begin;
    std::size_t end = pos;
    while (end < text.size() && !IsBoundary(text[end]))
        ++end;
    return std::string(text.substr(begin, end - begin));
}

WordKind ClassifyWord(std::string_view word) {
    std::string lower(word);
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (StartsWith(lower, "mailto:") || StartsWith(lower, "http://") || StartsWith(lower, "ftp://") ||
        StartsWith(lower, "www.") || EndsWith(lower, ".html") || EndsWith(lower, ".htm"))
        return WordKind::Link;
    if (StartsWith(lower, "#")) return WordKind::Channel;
    if (StartsWith(lower, "irc.")) return WordKind::Server;
    return WordKind::Plain;
}

} // namespace tallybot::irc
