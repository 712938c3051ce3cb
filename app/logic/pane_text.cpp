#include "app/logic/pane_text.h"

#include "irc/irc_text_codec.h"

#include <array>
#include <cstdint>

namespace tallybot::app {

namespace {

// SGR foreground codes of the 16 IRC palette entries, by index: white, black, navy, green, red,
// maroon, purple, orange, yellow, light green, teal, cyan, light blue, pink, grey, light grey.
constexpr std::array<int, 16> kPaletteAnsi = {97, 30, 34, 32, 91, 31, 35, 33, 93, 92, 36, 96, 94, 95, 90, 37};

constexpr irc::Colour kPaneTextColour = 0x000000; // what the pane writes "in the default colour"
constexpr irc::Colour kPaneBackColour = 0xFFFFFF;

int Distance(irc::Colour a, irc::Colour b) {
    int sum = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int d = static_cast<int>((static_cast<std::uint32_t>(a) >> shift) & 0xFF) -
                      static_cast<int>((static_cast<std::uint32_t>(b) >> shift) & 0xFF);
        sum += d * d;
    }
    return sum;
}

int NearestPaletteIndex(irc::Colour colour) {
    int best = 0;
    for (int i = 1; i < 16; ++i)
        if (Distance(colour, irc::PaletteColour(i)) < Distance(colour, irc::PaletteColour(best))) best = i;
    return best;
}

std::string AnsiRun(const irc::PaneRun& run) {
    std::string out = "\x1b[0";
    if (run.Bold) out += ";1";
    if (run.Underline) out += ";4";
    if (const int fore = AnsiForeground(run.Foreground); fore != 39) out += ";" + std::to_string(fore);
    if (run.Background && (static_cast<std::uint32_t>(*run.Background) & 0xFFFFFFu) != kPaneBackColour)
        out += ";" + std::to_string(kPaletteAnsi[static_cast<std::size_t>(NearestPaletteIndex(*run.Background))] + 10);
    out += 'm';
    return out + PrintableUtf8(run.Text);
}

} // namespace

OutputStyle ChooseOutputStyle(ColorChoice choice, bool raw, bool terminal, bool noColor) {
    if (raw) return OutputStyle::Raw;
    switch (choice) {
    case ColorChoice::Always:
        return OutputStyle::Ansi;
    case ColorChoice::Never:
        return OutputStyle::Plain;
    case ColorChoice::Auto:
        break;
    }
    return terminal && !noColor ? OutputStyle::Ansi : OutputStyle::Plain;
}

std::string PrintableUtf8(std::string_view windows1252) {
    std::string out;
    out.reserve(windows1252.size());
    for (const char c : windows1252) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == '\t')
            out += ' ';
        else if (byte < 0x20 || byte == 0x7F)
            continue;
        else {
            const char32_t cp = irc::Cp1252ToUnicode(byte);
            // The bytes the code page leaves undefined come back as C1 controls: shown as unknown.
            irc::AppendUtf8(out, cp >= 0x80 && cp < 0xA0 ? 0xFFFD : cp);
        }
    }
    return out;
}

int AnsiForeground(irc::Colour colour) {
    const auto value = static_cast<irc::Colour>(static_cast<std::uint32_t>(colour) & 0xFFFFFFu);
    if (value == kPaneTextColour) return 39;
    return kPaletteAnsi[static_cast<std::size_t>(NearestPaletteIndex(value))];
}

std::string RenderPaneLine(const irc::PaneLine& line, OutputStyle style) {
    switch (style) {
    case OutputStyle::Raw:
        return line.Raw;
    case OutputStyle::Plain:
        return PrintableUtf8(line.PlainText());
    case OutputStyle::Ansi:
        break;
    }
    std::string out;
    for (const irc::PaneRun& run : line.Runs)
        out += AnsiRun(run);
    return line.Runs.empty() ? out : out + "\x1b[0m";
}

} // namespace tallybot::app
