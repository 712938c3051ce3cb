#include "reporting/irc_preview.h"

namespace tallybot::reporting {

const std::array<Rgb, 16> kPreviewColours = {{
    {255, 255, 255},
    {0, 0, 0},
    {0, 0, 102},
    {0, 153, 0},
    {255, 0, 0},
    {102, 0, 0},
    {153, 0, 153},
    {255, 102, 0},
    {255, 255, 0},
    {0, 255, 0},
    {0, 153, 153},
    {0, 255, 255},
    {0, 0, 255},
    {255, 0, 255},
    {102, 102, 102},
    {204, 204, 204},
}};

namespace {

constexpr char kBold = 2;
constexpr char kColour = 3;
constexpr char kPlain = 15;
constexpr char kUnderline = 31;

// The colour number at pos, tried from 15 downwards; -1 when none. Advances pos past it.
int ReadColour(std::string_view line, std::size_t& pos) {
    const std::string_view rest = line.substr(pos);
    for (int n = 15; n >= 0; --n) {
        const std::string digits = std::to_string(n);
        if (rest.starts_with(digits)) {
            pos += digits.size();
            return n;
        }
    }
    return -1;
}

} // namespace

std::vector<PreviewRun> RenderIrcPreview(std::string_view line) {
    std::vector<PreviewRun> runs;
    PreviewRun current;
    auto add = [&](char c) {
        if (runs.empty() || runs.back().colour != current.colour || runs.back().bold != current.bold ||
            runs.back().underline != current.underline) {
            runs.push_back(current);
            runs.back().text.clear();
        }
        runs.back().text += c;
    };

    std::size_t pos = 0;
    while (pos < line.size()) {
        const char c = line[pos++];
        switch (c) {
        case kPlain:
            current.bold = false;
            current.underline = false;
            current.colour = 1;
            break;
        case kBold:
            current.bold = !current.bold;
            break;
        case kUnderline:
            current.underline = !current.underline;
            break;
        case kColour: {
            const int foreground = ReadColour(line, pos);
            if (foreground < 0) break;
            current.colour = foreground;
            if (pos < line.size() && line[pos] == ',') {
                std::size_t after = pos + 1;
                if (ReadColour(line, after) >= 0) pos = after; // background: skipped, not shown
            }
            break;
        }
        default:
            add(c);
            break;
        }
    }
    return runs;
}

} // namespace tallybot::reporting
