// AddToHistory: at most four entries, most recent first, matches compared trimmed.
#include "app/logic/history.h"

#include <gtest/gtest.h>

namespace tallybot::app {
namespace {

struct HistoryCase {
    const char* name;
    std::vector<std::string> before;
    std::string text;
    std::vector<std::string> after;
};

class AddToHistoryTest : public ::testing::TestWithParam<HistoryCase> {};

TEST_P(AddToHistoryTest, MovesTheTextToTheTop) {
    std::vector<std::string> list = GetParam().before;
    AddToHistory(GetParam().text, list);
    EXPECT_EQ(list, GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Table, AddToHistoryTest,
    ::testing::Values(HistoryCase{"new_text_shifts_down", {"a", "b", "c", "d"}, "e", {"e", "a", "b", "c"}},
                      HistoryCase{"top_entry_stays", {"a", "b", "c", "d"}, "a", {"a", "b", "c", "d"}},
                      HistoryCase{"match_swaps_with_top", {"a", "b", "c", "d"}, "c", {"c", "b", "a", "d"}},
                      HistoryCase{"trimmed_match_keeps_entry", {"a", " b ", "c", "d"}, "b  ", {" b ", "a", "c", "d"}},
                      HistoryCase{"empty_text_ignored", {"a", "b"}, "", {"a", "b"}},
                      HistoryCase{"short_list_grows", {"a"}, "b", {"b", "a"}},
                      HistoryCase{"empty_entries_shift_too", {"a", "", "", ""}, "b", {"b", "a", "", ""}},
                      HistoryCase{"case_matters", {"Irc.test", "b"}, "irc.test", {"irc.test", "Irc.test", "b"}}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace tallybot::app
