#include "base/escape_marks.h"

#include <array>
#include <string_view>

namespace tallybot::base {

namespace {

struct EscapeMark {
    char code;
    const char* mark;
};

// The section sign is the Windows-1252 byte 0xA7.
constexpr std::array<EscapeMark, 4> kEscapeMarks{{
    {'\x02', "\xA7\xA7"
             "1\xA7\xA7"},
    {'\x03', "\xA7\xA7"
             "2\xA7\xA7"},
    {'\x0F', "\xA7\xA7"
             "3\xA7\xA7"},
    {'\x1F', "\xA7\xA7"
             "4\xA7\xA7"},
}};

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
    std::size_t pos = 0;
    while ((pos = text.find(from, pos)) != std::string::npos) {
        text.replace(pos, from.size(), to);
        pos += to.size();
    }
}

} // namespace

void EscapeControlCodes(std::string& text) {
    for (const EscapeMark& m : kEscapeMarks)
        ReplaceAll(text, std::string_view(&m.code, 1), m.mark);
}

void UnescapeControlCodes(std::string& text) {
    for (const EscapeMark& m : kEscapeMarks)
        ReplaceAll(text, m.mark, std::string_view(&m.code, 1));
}

} // namespace tallybot::base
