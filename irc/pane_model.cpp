#include "irc/pane_model.h"

#include <array>

namespace tallybot::irc {

namespace {

// The usual IRC palette, as 0x00BBGGRR.
constexpr std::array<Colour, 16> kPalette = {
    0xFFFFFF, 0x000000, 0x7F0000, 0x009300, 0x0000FF, 0x00007F, 0x9C009C, 0x007FFC,
    0x00FFFF, 0x00FC00, 0x939300, 0xFFFF00, 0xFC0000, 0xFF00FF, 0x7F7F7F, 0xD2D2D2,
};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads up to two digits at pos; returns the count read and their value.
int ReadDigits(const std::string& text, std::size_t& pos, int& value) {
    int count = 0;
    value = 0;
    while (count < 2 && pos < text.size() && IsDigit(text[pos])) {
        value = value * 10 + (text[pos] - '0');
        ++pos;
        ++count;
    }
    return count;
}

class RunBuilder {
public:
    explicit RunBuilder(Colour base) { m_current.Foreground = base; }
    PaneRun& Attributes() { return m_current; }
    void Put(char c) {
        if (m_runs.empty() || !SameAttributes(m_runs.back(), m_current)) {
            m_runs.push_back(m_current);
            m_runs.back().Text.clear();
        }
        m_runs.back().Text += c;
    }
    std::vector<PaneRun> Take() { return std::move(m_runs); }

private:
    static bool SameAttributes(const PaneRun& a, const PaneRun& b) {
        return a.Foreground == b.Foreground && a.Background == b.Background && a.Bold == b.Bold &&
               a.Underline == b.Underline;
    }
    PaneRun m_current;
    std::vector<PaneRun> m_runs;
};

} // namespace

Colour PaletteColour(int index) {
    return kPalette.at(static_cast<std::size_t>(index));
}

std::string PaneLine::PlainText() const {
    std::string text;
    for (const auto& run : Runs)
        text += run.Text;
    return text;
}

PaneLine BuildPaneLine(const std::string& text, Colour baseColour) {
    PaneLine line;
    line.Raw = text;
    if (line.Raw.size() >= 2 && line.Raw.compare(line.Raw.size() - 2, 2, "\r\n") == 0)
        line.Raw.resize(line.Raw.size() - 2);

    RunBuilder runs(baseColour);
    const std::string& s = line.Raw;
    for (std::size_t pos = 0; pos < s.size();) {
        const char c = s[pos++];
        PaneRun& a = runs.Attributes();
        switch (c) {
        case '\x02':
            a.Bold = !a.Bold;
            break;
        case '\x1F':
            a.Underline = !a.Underline;
            break;
        case '\x0F':
            a.Foreground = baseColour;
            a.Background.reset();
            a.Bold = false;
            a.Underline = false;
            break;
        case '\x03': {
            int fore = 0;
            if (ReadDigits(s, pos, fore) == 0 || fore >= 16) break; // a value of 16 or more changes nothing
            a.Foreground = kPalette[static_cast<std::size_t>(fore)];
            if (pos + 1 < s.size() && s[pos] == ',' && IsDigit(s[pos + 1])) {
                ++pos;
                int back = 0;
                ReadDigits(s, pos, back);
                if (back < 16) a.Background = kPalette[static_cast<std::size_t>(back)];
            }
            break;
        }
        default:
            runs.Put(c);
        }
    }
    line.Runs = runs.Take();
    return line;
}

} // namespace tallybot::irc
