#include "reporting/irc_preview.h"

#include <gtest/gtest.h>

namespace tallybot::reporting {
namespace {

struct PreviewCase {
    const char* name;
    std::string line;
    std::vector<PreviewRun> runs;
};

const PreviewCase kCases[] = {
    {"plain", "abc", {{"abc", 1, false, false}}},
    {"labels and values",
     "\x03"
     "10Map:\x03"
     "2 q3",
     {{"Map:", 10, false, false}, {" q3", 2, false, false}}},
    {"tried from 15 down",
     "\x03"
     "123",
     {{"3", 12, false, false}}},
    {"padded colour reads as 0",
     "\x03"
     "05x",
     {{"5x", 0, false, false}}},
    {"background skipped",
     "\x03"
     "4,12x",
     {{"x", 4, false, false}}},
    {"comma without number stays",
     "\x03"
     "4,x",
     {{",x", 4, false, false}}},
    {"no number keeps colour",
     "\x03"
     "4a\x03"
     "b",
     {{"ab", 4, false, false}}},
    {"bold and underline toggle",
     "a\x02"
     "b\x1f"
     "c\x02"
     "d",
     {{"a", 1, false, false}, {"b", 1, true, false}, {"c", 1, true, true}, {"d", 1, false, true}}},
    {"reset",
     "\x03"
     "4\x02x\x0fy",
     {{"x", 4, true, false}, {"y", 1, false, false}}},
    {"empty", "", {}},
};

TEST(IrcPreviewTest, RendersRunsLikeAnIrcClient) {
    for (const PreviewCase& c : kCases)
        EXPECT_EQ(RenderIrcPreview(c.line), c.runs) << c.name;
}

} // namespace
} // namespace tallybot::reporting
