#include "app/app_settings.h"
#include "app/settings_file.h"
#include "base/escape_marks.h"
#include "tests/support/fixture_file.h"
#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

namespace tallybot::app {
namespace {

using test::ReadBytes;
using test::TempFolder;
using test::WriteBytes;

const std::string kBold = "\x02";
const std::string kMarkBold = "\247\2471\247\247"; // octal \247 is the mark byte 0xA7

AppSettings LoadFrom(const TempFolder& folder) {
    AppSettings settings;
    settings.AppPath = folder.Slash();
    LoadSettings(settings);
    return settings;
}

std::string SaveAndRead(AppSettings& settings, const TempFolder& folder) {
    settings.AppPath = folder.Slash();
    SaveSettings(settings);
    return ReadBytes(folder.File("Tallybot.ini"));
}

// The defaults, and a file that holds them, save as the golden file; so does an old file without
// the keys that came later (it keeps the classic behaviour), while a new home is written with the
// values today's servers need.
TEST(SettingsFile, DefaultsOldFilesAndNewHomesSaveAsTheirGoldenFiles) {
    const std::string golden = tallybot::test::ReadFixture("settings/default.ini");
    TempFolder folder, old, fresh, other;
    AppSettings defaults;
    EXPECT_EQ(SaveAndRead(defaults, folder), golden);
    AppSettings reread = LoadFrom(folder);
    EXPECT_EQ(SaveAndRead(reread, other), golden);
    WriteBytes(old.File("Tallybot.ini"), "[General]\r\nMinToTray=1\r\n");
    AppSettings classic = LoadFrom(old);
    EXPECT_EQ(SaveAndRead(classic, old), golden);
    AppSettings presentDay = LoadFrom(fresh);
    EXPECT_EQ(SaveAndRead(presentDay, fresh), tallybot::test::ReadFixture("settings/present_day.ini"));
}

// Every key read back as written: a file whose every value differs from the default survives a
// load and a save byte for byte.
TEST(SettingsFile, EveryKeyIsReadAndWrittenBack) {
    const std::string custom = tallybot::test::ReadFixture("settings/custom.ini");
    TempFolder folder, other;
    WriteBytes(folder.File("Tallybot.ini"), custom);
    AppSettings settings = LoadFrom(folder);
    EXPECT_EQ(SaveAndRead(settings, other), custom);
}

// Colour digits gain the colour code when read; a colour without it loses its first character
// when written. Keys ignore case (the first of two wins), non-numbers read as 0, long texts are cut.
TEST(SettingsFile, ReadingAndWritingQuirks) {
    TempFolder folder;
    WriteBytes(folder.File("Tallybot.ini"), "[IRC]\nExtTextCol=04\nPerformCmd=" + std::string(300, 'p') +
                                                "\n[game]\r\nquerytime=abc\r\nDEFAULTPORT=28960\r\ndefaultport=1\r\n");
    AppSettings settings = LoadFrom(folder);
    EXPECT_EQ(settings.ExtTextCol, "\00304");
    EXPECT_EQ(settings.PerformCmd, std::string(254, 'p'));
    EXPECT_EQ(settings.QueryTime, 0);
    EXPECT_EQ(settings.DefaultPort, 28960);
    settings.InfoTextCol = "12";
    const std::string saved = SaveAndRead(settings, folder);
    EXPECT_NE(saved.find("ExtTextCol=04\r\n"), std::string::npos);
    EXPECT_NE(saved.find("InfoTextCol=2\r\n"), std::string::npos);
}

// The save escapes the control codes of the on-join texts in the record too; a load undoes it, and
// a mark typed into the file reads back as its control code.
TEST(SettingsFile, OnJoinTextsAreEscapedInTheFileAndInMemory) {
    TempFolder folder;
    AppSettings settings;
    settings.OnJoinMessage = kBold + "hi" + kBold;
    settings.NoticeMsg = "\0034red\017 plain \037";
    const std::string saved = SaveAndRead(settings, folder);
    EXPECT_NE(saved.find("Message=" + kMarkBold + "hi" + kMarkBold + "\r\n"), std::string::npos);
    EXPECT_EQ(settings.OnJoinMessage, kMarkBold + "hi" + kMarkBold);
    EXPECT_EQ(settings.NoticeMsg, "\247\2472\247\2474red\247\2473\247\247 plain \247\2474\247\247");
    AppSettings loaded = LoadFrom(folder);
    EXPECT_EQ(loaded.OnJoinMessage, kBold + "hi" + kBold);
    EXPECT_EQ(loaded.NoticeMsg, "\0034red\017 plain \037");
    std::string typed = "a" + kMarkBold + "b";
    base::UnescapeControlCodes(typed);
    EXPECT_EQ(typed, "a" + kBold + "b");
}

// A link planted under the name the save once used for its temporary file is neither followed
// nor replaced: the file it points to stays as it was.
TEST(SettingsFile, SaveFollowsNoLinkPlantedBesideTheFile) {
    TempFolder folder, elsewhere;
    WriteBytes(elsewhere.File("victim"), "keep");
    std::filesystem::create_symlink(elsewhere.File("victim"), folder.File("Tallybot.ini.tmp"));
    AppSettings settings;
    settings.RealName = "saved";
    SaveAndRead(settings, folder);
    EXPECT_EQ(ReadBytes(elsewhere.File("victim")), "keep");
    EXPECT_FALSE(std::filesystem::is_symlink(folder.File("Tallybot.ini")));
    EXPECT_EQ(LoadFrom(folder).RealName, "saved");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Slash()), {}), 2); // no temporary left
}

// A folder that cannot exist or cannot be written to: the save writes nothing and raises nothing.
TEST(SettingsFile, UnwritableFolderIsIgnored) {
    TempFolder folder;
    WriteBytes(folder.File("file"), "x");
    AppSettings settings;
    settings.AppPath = folder.File("file") + "/";
    SaveSettings(settings);
    EXPECT_EQ(ReadBytes(folder.File("file")), "x");
    if (::geteuid() == 0) GTEST_SKIP() << "permissions do not bind root";
    std::filesystem::permissions(folder.Slash(),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    settings.AppPath = folder.Slash();
    SaveSettings(settings);
    EXPECT_FALSE(std::filesystem::exists(folder.File("Tallybot.ini")));
}

} // namespace
} // namespace tallybot::app
