// Profile files: the byte-exact written form, loading with defaults, the listing order and its
// limit of 20, the default profile, and failures that are logged instead of thrown.

#include "app/app_settings.h"
#include "base/app_log.h"
#include "profiles/profile_selection.h"
#include "profiles/profile_store.h"
#include "tests/support/fixture_file.h"
#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <tuple>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using tallybot::app::AppSettings;
using tallybot::profiles::GameProfile;
using tallybot::test::ReadBytes;
using tallybot::test::TempFolder;
using tallybot::test::WriteBytes;
namespace profiles = tallybot::profiles;

class SilentShell : public tallybot::base::OperatorShell {
public:
    void ShowMessage(const std::string&, const std::string&) override {}
    bool AskYesNo(const std::string&, const std::string&) override { return false; }
    void OpenExternal(const std::string&) override {}
};

class ProfileStoreTest : public ::testing::Test {
protected:
    ProfileStoreTest() {
        fs::create_directories(Folder());
        settings.AppPath = home.Slash();
        settings.Log = &log;
    }

    std::string Folder(const std::string& name = "") const { return home.File("Profiles/" + name); }
    void AddProfile(const std::string& name, int engine, const std::string& gameName = "") {
        WriteBytes(Folder(name), "[Game]\r\nEngine=" + std::to_string(engine) + "\r\nName=" + gameName + "\r\n");
    }

    TempFolder home;
    SilentShell shell;
    tallybot::base::clsAppLog log{home.File("Tallybot.log"), "Tallybot", "1.0.0", &shell};
    AppSettings settings;
};

GameProfile CtfProfile() {
    return GameProfile{"ctf",
                       "ctf.igp",
                       "Capture the flag on Quake 3",
                       2,
                       "4",
                       "baseq3",
                       "\x02Go!\x02 $ec$Map:$ic$ %map%",
                       "\00304Red\017 %tsr% - \00312Blue\017 %tsb%#fca# $ec$Capped by$ic$ %fcb%#fca#", // \003: colour
                       "\037Final\037: %tsr%:%tsb%",
                       /*StatusPosting*/ 1,
                       /*PostScoreChange*/ 1,
                       /*Interval*/ 1,
                       /*IntervalTime*/ 300,
                       /*IntervalInfo*/ 5,
                       /*Advanced*/ 1,
                       /*AutoTeams*/ 1,
                       /*Scoring*/ 2,
                       /*ScorePerCap*/ 5,
                       /*UseCustom*/ 1};
}

TEST_F(ProfileStoreTest, SavedProfileMatchesGoldenFileByteForByte) {
    settings.Profiles.Entries[3] = CtfProfile();
    profiles::SaveProfile(settings, "ctf.igp", 3);
    EXPECT_EQ(ReadBytes(Folder("ctf.igp")), ReadBytes(tallybot::test::SourceRoot() / "tests/data/profiles/ctf.igp"));
    EXPECT_EQ(settings.Profiles.Entries[3], CtfProfile()); // escaping works on a copy
    EXPECT_EQ(log.ErrorCount(), 0);
}

TEST_F(ProfileStoreTest, GoldenFileLoadsWithControlCharacters) {
    fs::copy_file(tallybot::test::SourceRoot() / "tests/data/profiles/ctf.igp", Folder("ctf.igp"));
    profiles::LoadAllProfiles(settings);
    ASSERT_EQ(settings.Profiles.ProfileCount, 1);
    EXPECT_EQ(settings.Profiles.Entries[1], CtfProfile());
    EXPECT_EQ(settings.Profiles.DefaultProfile, 0);
}

TEST_F(ProfileStoreTest, MissingKeysTakeTheirDefaultsAndGarbageNumbersReadAsZero) {
    WriteBytes(Folder("Sparse.igp"), "[AdvInfo]\nScoring=abc\nScorePerCap=7x\n[Posting]\nIntervalTime=-3\n");
    profiles::LoadProfile(settings, 1, "Sparse.igp");
    const GameProfile& p = settings.Profiles.Entries[1];
    EXPECT_EQ(p.ProfileName, "Sparse");
    EXPECT_EQ(p.Engine, 1);
    EXPECT_EQ(p.StatusPosting, 1);
    EXPECT_EQ(p.Interval, 1);
    EXPECT_EQ(p.IntervalTime, -3); // a sign before the digits is a number
    EXPECT_EQ(p.IntervalInfo, 1);
    EXPECT_EQ(p.PostScoreChange, 0);
    EXPECT_EQ(p.Scoring, 0);
    EXPECT_EQ(p.ScorePerCap, 7);
    EXPECT_EQ(p.UseCustom, 0);
    EXPECT_EQ(p.Description, "");
    EXPECT_EQ(log.ErrorCount(), 0); // noted in the log, not an error
    EXPECT_NE(log.LogText().find("Scoring=abc is not a number"), std::string::npos);
    EXPECT_EQ(log.LogText().find("IntervalTime"), std::string::npos);
}

TEST_F(ProfileStoreTest, ListingIsSortedAndOnlyTakesProfileFiles) {
    for (const char* name : {"b.igp", "a.igp", "c.IGP", "B.igp", "A.igp", "Ab.igp"})
        AddProfile(name, 2);
    WriteBytes(Folder("notes.txt"), "x");
    WriteBytes(Folder(".igp"), "x"); // an extension alone names no profile
    fs::create_directories(Folder("dir.igp"));
    EXPECT_EQ(profiles::ListProfiles(settings), 6);
    // Without regard to case, then byte order for names equal but for case.
    std::vector<std::string> listed;
    for (int i = 1; i <= 6; ++i)
        listed.push_back(settings.Profiles.Entries[i].FileName);
    EXPECT_EQ(listed, (std::vector<std::string>{"A.igp", "a.igp", "Ab.igp", "B.igp", "b.igp", "c.IGP"}));
}

TEST_F(ProfileStoreTest, LaterListedEngineZeroProfileIsTheDefault) {
    AddProfile("Alpha.igp", 0);
    AddProfile("Beta.igp", 2);
    AddProfile("Default.igp", 0);
    profiles::LoadAllProfiles(settings);
    EXPECT_EQ(settings.Profiles.DefaultProfile, 3);
    EXPECT_EQ(settings.Profiles.Entries[3].ProfileName, "Default");
}

TEST_F(ProfileStoreTest, TwentyFirstFileIsLoggedAndTheFirstTwentyKept) {
    for (int i = 1; i <= 21; ++i)
        AddProfile((i < 10 ? "p0" : "p") + std::to_string(i) + ".igp", i == 21 ? 0 : 2);
    profiles::LoadAllProfiles(settings);
    EXPECT_EQ(settings.Profiles.ProfileCount, 20);
    EXPECT_EQ(settings.Profiles.Entries[20].ProfileName, "p20");
    EXPECT_EQ(settings.Profiles.DefaultProfile, 0); // p21 never made it into the table
    EXPECT_EQ(log.ErrorCount(), 1);
    EXPECT_NE(log.LogText().find("modFileHelper;ListProfiles;"), std::string::npos);
    EXPECT_NE(log.LogText().find(";9;Subscript out of range"), std::string::npos);
}

TEST_F(ProfileStoreTest, MissingFolderListsNothingWithoutError) {
    fs::remove_all(Folder());
    settings.Profiles.Entries[4].Engine = 2; // left from an earlier load
    profiles::LoadAllProfiles(settings);
    EXPECT_EQ(settings.Profiles.ProfileCount, 0);
    EXPECT_EQ(settings.Profiles.DefaultProfile, 0);
    GameProfile cleared;
    cleared.Scoring = 3; // a cleared entry differs from a new profile only here
    EXPECT_EQ(settings.Profiles.Entries[4], cleared);
    EXPECT_EQ(log.ErrorCount(), 0);
}

TEST_F(ProfileStoreTest, SaveCreatesTheFolderAndKeepsForeignLines) {
    fs::remove_all(Folder());
    settings.Profiles.Entries[1] = CtfProfile();
    profiles::SaveProfile(settings, "ctf.igp", 1);
    ASSERT_TRUE(fs::exists(Folder("ctf.igp")));

    WriteBytes(Folder("ctf.igp"), "; kept\r\n[Game]\r\nEngine=9\r\nExtra=1\r\n");
    profiles::SaveProfile(settings, "ctf.igp", 1);
    const std::string bytes = ReadBytes(Folder("ctf.igp"));
    EXPECT_EQ(bytes.rfind("; kept\r\n[Game]\r\nEngine=2\r\nExtra=1\r\nName=baseq3\r\nType=4\r\n", 0), 0u);
}

TEST_F(ProfileStoreTest, DeletingRemovesTheFileAndAMissingFileIsLogged) {
    AddProfile("gone.igp", 2);
    profiles::DeleteProfile(settings, "gone.igp");
    EXPECT_FALSE(fs::exists(Folder("gone.igp")));
    EXPECT_EQ(log.ErrorCount(), 0);

    profiles::DeleteProfile(settings, "gone.igp");
    EXPECT_EQ(log.ErrorCount(), 1);
    EXPECT_NE(log.LogText().find("modFileHelper;DeleteProfile;"), std::string::npos);
    EXPECT_NE(log.LogText().find(";53;File not found"), std::string::npos);
}

TEST_F(ProfileStoreTest, ShippedProfilesLoadAndSaveBackUnchanged) {
    int engineZero = 0;
    for (const auto& entry : fs::directory_iterator(tallybot::test::SourceRoot() / "profiles/default")) {
        const std::string name = entry.path().filename().string();
        fs::copy_file(entry.path(), Folder(name));
        profiles::LoadProfile(settings, 1, name);
        if (settings.Profiles.Entries[1].Engine == 0) ++engineZero;
        fs::remove(Folder(name));
        profiles::SaveProfile(settings, name, 1);
        EXPECT_EQ(ReadBytes(Folder(name)), ReadBytes(entry.path())) << name;
    }
    EXPECT_EQ(engineZero, 1); // exactly one default profile ships
    EXPECT_EQ(log.ErrorCount(), 0);
}

// A profile for a specific game is chosen before a generic one of the same engine: Urban Terror in
// game type 4 is not Quake 3 CTF, and a Quake 3 mod nobody wrote a profile for gets the default.
TEST_F(ProfileStoreTest, ShippedProfilesChooseTheGameBeforeTheEngine) {
    for (const auto& entry : fs::directory_iterator(tallybot::test::SourceRoot() / "profiles/default"))
        fs::copy_file(entry.path(), Folder(entry.path().filename().string()));
    profiles::LoadAllProfiles(settings);
    const std::tuple<int, const char*, const char*, const char*> cases[] = {
        {2, "q3urt43", "4", "Profile: UrbanTerror-43"}, {2, "q3urt42", "4", "Profile: UrbanTerror-42"},
        {2, "baseoa", "4", "Profile: OpenArena"},       {2, "Xonotic", "ctf", "Profile: Xonotic"},
        {2, "baseq3", "4", "Profile: Quake3-CTF"},      {2, "cpma", "4", "Profile: Default"},
        {11, "etmain", "5", "Profile: EnemyTerritory"}, {18, "tf", "", "Profile: Source"}};
    for (const auto& [engine, name, type, caption] : cases) {
        settings.Profiles.CurrentProfile = 0;
        EXPECT_EQ(profiles::SelectProfile(engine, name, type, settings.Profiles), caption) << name;
    }
}

} // namespace
