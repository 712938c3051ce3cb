// The focus-loss check of the dialogs' text boxes: each box's rule, the byte-exact messages and
// the page and focus the dialog returns to.

#include "profiles/field_validation.h"
#include "tests/support/param_name.h"

#include <gtest/gtest.h>

namespace {

using tallybot::profiles::ValidateNamedTextBox;

constexpr const char* kEmptyValue = "You left the textbox empty. Please enter a value.";
constexpr const char* kBadNumber = "You did not enter a valid number. Please enter a valid value.";
constexpr const char* kEmptyText = "You left the textbox empty. Please enter a text.";
constexpr const char* kBadText = "You did not enter a valid text. Please enter a text.";

struct Case {
    const char* box;
    const char* text;
    const char* message; // nullptr: accepted
    int tabPage;
};

class ValidationTable : public ::testing::TestWithParam<Case> {};

TEST_P(ValidationTable, MessageAndPage) {
    const Case& c = GetParam();
    const auto result = ValidateNamedTextBox(c.box, c.text);
    if (!c.message) {
        EXPECT_TRUE(result.Accepted) << result.Message;
        EXPECT_EQ(result.Message, "");
        EXPECT_FALSE(result.Refocus);
        return;
    }
    EXPECT_FALSE(result.Accepted);
    EXPECT_EQ(result.Message, c.message);
    EXPECT_EQ(result.TabPage, c.tabPage);
    EXPECT_TRUE(result.Refocus);
}

INSTANTIATE_TEST_SUITE_P(
    Boxes, ValidationTable,
    ::testing::Values(
        Case{"txtGamQueryTime", "32000", nullptr, 0},
        Case{"txtGamQueryTime", "32001", "You did not enter a valid number. Please enter a valid value up to 32000.",
             2},
        Case{"txtGamQueryTime", "", kEmptyValue, 2}, Case{"txtGamQueryTime", "1O00", kBadNumber, 2},
        Case{"txtGamQueryTime", "-5", nullptr, 0}, Case{"txtGamQueryTime", "1.5e2", nullptr, 0},
        Case{"txtGamQueryTime", "4e4", "You did not enter a valid number. Please enter a valid value up to 32000.", 2},
        Case{"txtDefGamPort", "0", nullptr, 0}, Case{"txtDefGamPort", "99999999", nullptr, 0},
        Case{"txtDefGamPort", "port", kBadNumber, 2}, Case{"txtIRCSendDelay", "32000", nullptr, 0},
        Case{"txtIRCSendDelay", "40000", "You did not enter a valid number. Please enter a valid value up to 32000.",
             2},
        Case{"txtScorePerCap", "255", nullptr, 0},
        Case{"txtScorePerCap", "256", "You did not enter a valid number. Please enter a valid value up to 255.", 3},
        Case{"txtIntervalTime", "", kEmptyValue, 4}, Case{"txtIntervalTime", "300", nullptr, 0},
        Case{"txtIRCRealName", "12345", kBadText, 1}, Case{"txtIRCRealName", "abc1", nullptr, 0},
        Case{"txtIRCRealName", "", kEmptyText, 1}, Case{"txtIRCIdentEmail", "1.5", kBadText, 1},
        Case{"txtIRCIdentEmail", "me@example.org", nullptr, 0}, Case{"txtSomethingElse", "", nullptr, 0}),
    [](const auto& info) {
        return std::string(info.param.box) + "_" + tallybot::testsupport::ParamWord(info.param.text);
    });

TEST(ValidateTextBox, NoLimitBelowOne) {
    EXPECT_TRUE(tallybot::profiles::ValidateTextBox("70000", true, 2, 0).Accepted);
    EXPECT_TRUE(tallybot::profiles::ValidateTextBox("70000", true, 2, -1).Accepted);
}

} // namespace
