#pragma once
// Test names from table texts: letters and digits stay, other characters become words, so every
// generated name is a valid gtest name that still says which text the row feeds.

#include <cctype>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>

namespace tallybot::testsupport {

inline std::string ParamWord(std::string_view text) {
    static const std::map<char, const char*> words = {{' ', "Blank"}, {'.', "Dot"},   {'-', "Minus"},
                                                      {'@', "At"},    {'^', "Caret"}, {'"', "Quote"}};
    std::string word = text.empty() ? "Empty" : "";
    for (const char c : text) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "x%02X", static_cast<unsigned char>(c));
        word += std::isalnum(static_cast<unsigned char>(c)) ? std::string(1, c) : words.count(c) ? words.at(c) : hex;
    }
    return word;
}

} // namespace tallybot::testsupport
