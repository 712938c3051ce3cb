#include "app/logic/pane_text.h"

namespace tallybot::app {

namespace {

// Windows colour value 0x00BBGGRR as "R;G;B".
std::string Rgb(irc::Colour colour) {
    const auto value = static_cast<std::uint32_t>(colour) & 0xFFFFFFu;
    return std::to_string(value & 0xFF) + ";" + std::to_string((value >> 8) & 0xFF) + ";" +
           std::to_string((value >> 16) & 0xFF);
}

void AppendUtf8(std::string& out, const std::string& latin1) {
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            out += c;
        } else {
            out += static_cast<char>(0xC0 | (byte >> 6));
            out += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
}

} // namespace

std::string RenderAnsi(const irc::PaneLine& line) {
    std::string out;
    for (const irc::PaneRun& run : line.Runs) {
        out += "\x1b[0";
        if (run.Bold) out += ";1";
        if (run.Underline) out += ";4";
        out += ";38;2;" + Rgb(run.Foreground);
        if (run.Background) out += ";48;2;" + Rgb(*run.Background);
        out += 'm';
        AppendUtf8(out, run.Text);
    }
    out += "\x1b[0m";
    return out;
}

} // namespace tallybot::app
