#pragma once
// One pane line as the widget paints it: the text split into runs that share colour, background,
// bold and underline. The control characters are consumed while the runs are built.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tallybot::irc {

// Windows colour value 0x00BBGGRR (the highlight default is a sign-extended constant, kept).
using Colour = std::int32_t;

struct PaneRun {
    std::string Text; // bytes, Latin-1
    Colour Foreground = 0;
    std::optional<Colour> Background; // set only by a colour code with a background index
    bool Bold = false;
    bool Underline = false;
    bool operator==(const PaneRun&) const = default;
};

struct PaneLine {
    std::string Raw;           // the text as written (time stamp in front, no CR LF), codes kept
    std::vector<PaneRun> Runs; // the visible text; the line end is implicit
    bool operator==(const PaneLine&) const = default;

    std::string PlainText() const; // the runs' text joined, control characters gone
};

// The usual 16-colour IRC palette as Windows colour values.
Colour PaletteColour(int index);

// Builds one pane line from text that already carries its time stamp: a trailing CR LF is
// dropped, then codes 2, 3, 15 and 31 are applied starting from the given base colour.
PaneLine BuildPaneLine(const std::string& text, Colour baseColour);

} // namespace tallybot::irc
