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
    {"labels and values", "\00310Map:\0032 q3", {{"Map:", 10, false, false}, {" q3", 2, false, false}}},
    {"tried from 15 down", "\003123", {{"3", 12, false, false}}},
    {"padded colour reads as 0", "\00305x", {{"5x", 0, false, false}}},
    {"background skipped", "\0034,12x", {{"x", 4, false, false}}},
    {"comma without number stays", "\0034,x", {{",x", 4, false, false}}},
    {"no number keeps colour", "\0034a\003b", {{"ab", 4, false, false}}},
    {"bold and underline toggle",
     "a\002b\037c\002d",
     {{"a", 1, false, false}, {"b", 1, true, false}, {"c", 1, true, true}, {"d", 1, false, true}}},
    {"reset", "\0034\002x\017y", {{"x", 4, true, false}, {"y", 1, false, false}}},
    {"empty", "", {}},
};

TEST(IrcPreviewTest, RendersRunsLikeAnIrcClient) {
    for (const PreviewCase& c : kCases)
        EXPECT_EQ(RenderIrcPreview(c.line), c.runs) << c.name;
}

} // namespace
} // namespace tallybot::reporting
