#include "query/name_colours.h"

#include "query/game_state.h"

#include <array>
#include <optional>

namespace tallybot::query {

namespace {

struct Rgb {
    int r, g, b;
};

// clang-format off
// The sixteen colours IRC clients show for the numbers 0 to 15.
constexpr std::array<Rgb, 16> kIrcPalette = {{
    {255, 255, 255}, {0, 0, 0},     {0, 0, 102},   {0, 153, 0},     {255, 0, 0},     {102, 0, 0},
    {153, 0, 153},   {255, 102, 0}, {255, 255, 0}, {0, 255, 0},     {0, 153, 153},   {0, 255, 255},
    {0, 0, 255},     {255, 0, 255}, {102, 102, 102}, {204, 204, 204}}};

// "^0" to "^9" of the Quake family; 8 and 9 as the later engines (ET, ioquake3) show them.
constexpr std::array<Rgb, 10> kCaretDigits = {{
    {0, 0, 0},       {255, 0, 0},   {0, 255, 0},   {255, 255, 0},   {0, 0, 255},
    {0, 255, 255},   {255, 0, 255}, {255, 255, 255}, {255, 128, 0}, {128, 128, 128}}};
// clang-format on

int NearestIrcColour(Rgb c) {
    int best = 0;
    long bestDistance = -1;
    for (int i = 0; i < static_cast<int>(kIrcPalette.size()); ++i) {
        const Rgb& p = kIrcPalette[static_cast<std::size_t>(i)];
        const long d = long{p.r - c.r} * (p.r - c.r) + long{p.g - c.g} * (p.g - c.g) + long{p.b - c.b} * (p.b - c.b);
        if (bestDistance < 0 || d < bestDistance) {
            best = i;
            bestDistance = d;
        }
    }
    return best;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// "rrggbb" after "^X"; nothing when the six characters are not all hex digits.
std::optional<Rgb> HexColour(std::string_view six) {
    if (six.size() < 6) return std::nullopt;
    int v[6];
    for (std::size_t i = 0; i < 6; ++i)
        if ((v[i] = HexDigit(six[i])) < 0) return std::nullopt;
    return Rgb{v[0] * 16 + v[1], v[2] * 16 + v[3], v[4] * 16 + v[5]};
}

void AppendColour(std::string& out, Rgb c) {
    const int n = NearestIrcColour(c);
    out += '\x03';
    out += static_cast<char>('0' + n / 10);
    out += static_cast<char>('0' + n % 10);
}

} // namespace

std::string GameColoursToIrc(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 8);
    bool coloured = false;
    std::size_t i = 0;
    while (i < text.size()) {
        const char c = text[i];
        if (c == '"') {
            ++i;
            continue;
        }
        if (c == '^' && i + 1 < text.size()) {
            const char next = text[i + 1];
            if (next == 'N' || next == 'n' || next == 'B' || next == 'b') {
                i += 2;
                continue;
            }
            if (next == 'X' || next == 'x') {
                if (auto rgb = HexColour(text.substr(i + 2, 6))) {
                    AppendColour(out, *rgb);
                    coloured = true;
                }
                i += 8; // the whole code goes, as in ClearName, even when it is no colour
                continue;
            }
            if (next >= '0' && next <= '9') {
                AppendColour(out, kCaretDigits[static_cast<std::size_t>(next - '0')]);
                coloured = true;
                i += 2;
                continue;
            }
        }
        out.push_back(c);
        ++i;
    }
    if (coloured) out += '\x0F';
    return out;
}

std::string UnrealColoursToIrc(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 8);
    bool coloured = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\x1B') {
            out.push_back(text[i]);
        } else if (i + 3 < text.size()) {
            const auto byte = [&](std::size_t k) { return static_cast<int>(static_cast<unsigned char>(text[i + k])); };
            AppendColour(out, {byte(1), byte(2), byte(3)});
            coloured = true;
            i += 3;
        } else {
            break; // a code cut short by the end of the text goes with it
        }
    }
    if (coloured) out += '\x0F';
    return out;
}

std::string WithoutIrcColours(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    const auto skipDigits = [&](std::size_t& i) {
        for (int n = 0; n < 2 && i < text.size() && text[i] >= '0' && text[i] <= '9'; ++n)
            ++i;
    };
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i++];
        if (c == '\x03') {
            skipDigits(i);
            if (i + 1 < text.size() && text[i] == ',' && text[i + 1] >= '0' && text[i + 1] <= '9') skipDigits(++i);
        } else if (c != '\x0F') {
            out.push_back(c);
        }
    }
    return out;
}

std::string CleanName(std::string_view text, bool toIrc) {
    return toIrc ? GameColoursToIrc(text) : ClearName(text);
}

} // namespace tallybot::query
