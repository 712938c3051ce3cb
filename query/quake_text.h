#pragma once
// Text helpers of the Quake-family parsers: the ExtractString tokenizer on views (no copies of
// the reply per token), case-insensitive key tests, and fixed-width conversions with a fast path
// for plain decimal numbers that falls back to the general conversion for everything else.

#include "base/vb_convert.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tallybot::query::quake {

// ExtractString on a view: the text before `delimiter`, removed from `source` with it; without
// the delimiter the rest, leaving `source` empty.
inline std::string_view Extract(std::string_view& source, char delimiter) {
    std::size_t pos = source.find(delimiter);
    std::string_view head = source.substr(0, pos);
    source = pos == std::string_view::npos ? std::string_view{} : source.substr(pos + 1);
    return head;
}

inline char LowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string Lower(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        c = LowerAscii(c);
    return out;
}

// token, lower-cased, equals the lower-case key.
inline bool KeyIs(std::string_view token, std::string_view key) {
    if (token.size() != key.size()) return false;
    for (std::size_t i = 0; i < key.size(); ++i)
        if (LowerAscii(token[i]) != key[i]) return false;
    return true;
}

// Whole-number value of a text of an optional "-" and up to nine digits; false for anything
// else, which then goes through the general conversion.
inline bool PlainInteger(std::string_view text, long& value) {
    std::size_t i = 0;
    bool negative = false;
    if (!text.empty() && text[0] == '-') {
        negative = true;
        i = 1;
    }
    if (i == text.size() || text.size() - i > 9) return false;
    long v = 0;
    for (; i < text.size(); ++i) {
        char c = text[i];
        if (c < '0' || c > '9') return false;
        v = v * 10 + (c - '0');
    }
    value = negative ? -v : v;
    return true;
}

inline std::int16_t ToInt16(std::string_view text) {
    long v = 0;
    if (!PlainInteger(text, v)) return vb::CInt(text);
    if (v < INT16_MIN || v > INT16_MAX) throw vb::Overflow();
    return static_cast<std::int16_t>(v);
}

inline std::uint8_t ToByte(std::string_view text) {
    long v = 0;
    if (!PlainInteger(text, v)) return vb::CByte(text);
    if (v < 0 || v > 255) throw vb::Overflow();
    return static_cast<std::uint8_t>(v);
}

inline std::int32_t ToInt32(std::string_view text) {
    long v = 0;
    if (!PlainInteger(text, v)) return vb::CLng(text);
    return static_cast<std::int32_t>(v); // nine digits always fit
}

} // namespace tallybot::query::quake
