// The focus-loss check of the dialogs' text boxes as a table: tests/data/profiles/text_boxes.txt
// holds "box|text|page|message" a line; an accepted text has page 0 and no message.

#include "profiles/field_validation.h"
#include "tests/support/fixture_file.h"

#include <sstream>

#include <gtest/gtest.h>

namespace {

using tallybot::profiles::ValidateNamedTextBox;

TEST(TextBoxValidation, MessageAndPageOfEveryCase) {
    std::istringstream in(tallybot::test::ReadFixture("profiles/text_boxes.txt"));
    int cases = 0;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        std::string box, text, page, message;
        std::getline(fields, box, '|');
        std::getline(fields, text, '|');
        std::getline(fields, page, '|');
        std::getline(fields, message);
        const auto result = ValidateNamedTextBox(box, text);
        EXPECT_EQ(result.Accepted, message.empty()) << line;
        EXPECT_EQ(result.Refocus, !message.empty()) << line;
        EXPECT_EQ(result.Message, message) << line;
        EXPECT_EQ(message.empty() ? "0" : std::to_string(result.TabPage), page) << line;
        ++cases;
    }
    EXPECT_GT(cases, 0);
}

TEST(TextBoxValidation, NoLimitBelowOne) {
    EXPECT_TRUE(tallybot::profiles::ValidateTextBox("70000", true, 2, 0).Accepted);
    EXPECT_TRUE(tallybot::profiles::ValidateTextBox("70000", true, 2, -1).Accepted);
}

} // namespace
