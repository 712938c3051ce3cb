#pragma once
// How the dialogs' preview box paints an expanded line: IRC control codes become runs of text
// with a foreground colour, bold and underline, the way an IRC client would show them.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallybot::reporting {

struct PreviewRun {
    std::string text;
    int colour = 1; // index into kPreviewColours
    bool bold = false;
    bool underline = false;

    bool operator==(const PreviewRun&) const = default;
};

struct Rgb {
    std::uint8_t red, green, blue;
    bool operator==(const Rgb&) const = default;
};

extern const std::array<Rgb, 16> kPreviewColours;

// Colour numbers are tried from 15 down to 0 without padding, so "05" reads as colour 0 and the
// text "5"; backgrounds after a comma are skipped and not shown.
std::vector<PreviewRun> RenderIrcPreview(std::string_view line);

} // namespace tallybot::reporting
