// The main window's first size and place on screens of every size.
#include "gui/window_geometry.h"

#include <gtest/gtest.h>

namespace tallybot::guitest {
namespace {

struct PlacementCase {
    const char* name;
    QSize wanted;
    QRect available;
    desktop::FirstPlacement expected;
};

const QMargins kFrame(4, 32, 4, 4);
const QSize kMinimum(760, 520);

// 1280x800 at 150 % leaves about 853x501 logical pixels beside the panel.
const PlacementCase kCases[] = {
    {"ScaledLaptop", {1000, 660}, {0, 32, 853, 501}, {{0, 32}, {845, 465}, {760, 465}}},
    {"LargeScreen", {1000, 660}, {0, 0, 1920, 1040}, {{456, 172}, {1000, 660}, kMinimum}},
    {"SecondScreenRightOfFirst", {1000, 660}, {1920, 0, 1280, 1024}, {{2056, 164}, {1000, 660}, kMinimum}},
    {"TinyScreen", {1000, 660}, {0, 0, 640, 480}, {{0, 0}, {632, 444}, {632, 444}}},
};

class FirstPlacementTest : public ::testing::TestWithParam<PlacementCase> {};

TEST_P(FirstPlacementTest, FitsTheFreeAreaThenCentres) {
    const PlacementCase& c = GetParam();
    EXPECT_EQ(desktop::FitToScreen(c.wanted, kMinimum, c.available, kFrame), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Screens, FirstPlacementTest, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace tallybot::guitest
