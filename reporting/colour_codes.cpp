#include "reporting/colour_codes.h"

namespace tallybot::reporting {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t DigitsFrom(std::string_view text, std::size_t pos) {
    std::size_t n = 0;
    while (pos + n < text.size() && IsDigit(text[pos + n]))
        ++n;
    return n;
}

} // namespace

std::string FitColourCode(std::string_view code, std::string_view following) {
    std::string fitted(code);
    if (code.empty() || code[0] != '\x03' || following.empty()) return fitted;
    const char next = following.front();
    const std::size_t foreground = DigitsFrom(code, 1);
    if (foreground == 0) return fitted; // a bare reset has no number to widen
    const std::size_t comma = 1 + foreground;
    if (comma == code.size()) {
        if (foreground == 1 && (IsDigit(next) || next == ',')) fitted.insert(1, 1, '0');
        return fitted;
    }
    const std::size_t background = code[comma] == ',' ? DigitsFrom(code, comma + 1) : 0;
    if (comma + 1 + background == code.size() && background == 1 && IsDigit(next)) fitted.insert(comma + 1, 1, '0');
    return fitted;
}

} // namespace tallybot::reporting
