// Choosing the profile for a server: the first match in table order wins, empty name and type
// match anything, nothing matching keeps the current profile, and the default is the fallback.

#include "profiles/profile_selection.h"

#include <gtest/gtest.h>

namespace {

using tallybot::profiles::ProfileTable;
using tallybot::profiles::SelectProfile;

void Put(ProfileTable& table, int index, const std::string& name, int engine, const std::string& gameName = "",
         const std::string& gameType = "") {
    auto& p = table.Entries[index];
    p.ProfileName = name;
    p.Engine = engine;
    p.GameName = gameName;
    p.GameType = gameType;
    table.ProfileCount = std::max(table.ProfileCount, index);
    if (engine == 0) table.DefaultProfile = index;
}

ProfileTable Table() {
    ProfileTable t;
    Put(t, 1, "Default", 0);
    Put(t, 2, "osp-ctf", 2, "osp", "4");
    Put(t, 3, "q3-ctf", 2, "", "4");
    Put(t, 4, "q3", 2);
    Put(t, 5, "ut", 3, "", "CTF");
    return t;
}

struct Case {
    const char* label;
    int engine;
    const char* gameName;
    const char* gameType;
    int expected;
    const char* caption;
};

class SelectionTable : public ::testing::TestWithParam<Case> {};

TEST_P(SelectionTable, PicksTheFirstMatch) {
    const Case& c = GetParam();
    ProfileTable table = Table();
    EXPECT_EQ(SelectProfile(c.engine, c.gameName, c.gameType, table), c.caption);
    EXPECT_EQ(table.CurrentProfile, c.expected);
}

INSTANTIATE_TEST_SUITE_P(Profiles, SelectionTable,
                         ::testing::Values(Case{"NameAndType", 2, "osp", "4", 2, "Profile: osp-ctf"},
                                           Case{"TypeOnly", 2, "baseq3", "4", 3, "Profile: q3-ctf"},
                                           Case{"EngineOnly", 2, "osp", "1", 4, "Profile: q3"},
                                           Case{"NameIsCaseSensitive", 2, "OSP", "4", 3, "Profile: q3-ctf"},
                                           Case{"TypeIsCaseSensitive", 3, "", "ctf", 1, "Profile: Default"},
                                           Case{"OtherEngine", 3, "x", "CTF", 5, "Profile: ut"},
                                           Case{"NoMatchFallsBackToDefault", 11, "etmain", "2", 1, "Profile: Default"}),
                         [](const auto& info) { return std::string(info.param.label); });

TEST(SelectProfile, EarlierCatchAllWinsOverLaterSpecificProfile) {
    ProfileTable table;
    Put(table, 1, "any-q3", 2);
    Put(table, 2, "osp", 2, "osp");
    SelectProfile(2, "osp", "4", table);
    EXPECT_EQ(table.CurrentProfile, 1);
}

TEST(SelectProfile, CurrentProfileStaysWhenNothingMatches) {
    ProfileTable table = Table();
    Put(table, 20, "forced", 9);
    table.CurrentProfile = 20; // forced from the menu, the last entry of the table
    EXPECT_EQ(SelectProfile(11, "etmain", "2", table), "Profile: forced");
    EXPECT_EQ(table.CurrentProfile, 20);
}

TEST(SelectProfile, NoProfilesAtAllLeavesNone) {
    ProfileTable table;
    table.Entries.fill({});
    for (int i = 1; i <= 20; ++i)
        table.Entries[i].Scoring = 3; // cleared, engine 0
    EXPECT_EQ(SelectProfile(2, "baseq3", "4", table), "Profile: None");
    EXPECT_EQ(table.CurrentProfile, 0);
}

} // namespace
