#pragma once
// Test names from table texts: letters and digits stay, other characters become words, so every
// generated name is a valid gtest name that still says which text the row feeds.

#include <cstdio>
#include <string>
#include <string_view>

namespace tallybot::testsupport {

inline std::string ParamWord(std::string_view text) {
    if (text.empty()) return "Empty";
    std::string word;
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if ((u >= '0' && u <= '9') || (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z')) {
            word += c;
            continue;
        }
        switch (c) {
        case ' ':
            word += "Blank";
            break;
        case '.':
            word += "Dot";
            break;
        case '-':
            word += "Minus";
            break;
        case '@':
            word += "At";
            break;
        case '^':
            word += "Caret";
            break;
        case '"':
            word += "Quote";
            break;
        default: {
            char hex[4];
            std::snprintf(hex, sizeof hex, "x%02X", u);
            word += hex;
        }
        }
    }
    return word;
}

} // namespace tallybot::testsupport
