#include "base/ini_file.h"
#include "tests/support/temp_folder.h"

#include <string>

#include <gtest/gtest.h>

namespace tallybot::base {
namespace {

using test::ReadBytes;
using test::TempFolder;
using test::WriteBytes;

IniFile Parsed(const std::string& bytes) {
    IniFile ini;
    ini.Parse(bytes);
    return ini;
}

TEST(IniFile, NamesMatchCaseInsensitivelyAndTheFirstMatchWins) {
    IniFile ini = Parsed("[game]\nquerytime=250\nQueryTime=999\n[GAME]\nDoLog=1\n[\xC9t\xC9]\nK=v\n");
    EXPECT_EQ(ini.GetInt("Game", "QueryTime", 1000), 250);
    EXPECT_EQ(ini.GetInt("Game", "DoLog", 7), 7); // the second [GAME] is never searched
    EXPECT_EQ(ini.GetString("\xE9t\xE9", "k", ""), "v");
}

TEST(IniFile, ValuesAreTrimmedUnquotedAndCutTo254) {
    std::string longValue(300, 'x');
    IniFile ini = Parsed("[S]\r\n  A =  spaced  \r\nB=\"quoted\"\r\nC='half\r\nD=" + longValue +
                         "\r\nE=\r\nF=\"\"\r\nG=\t\v\fv\t\r\r\n");
    EXPECT_EQ(ini.GetString("S", "A", ""), "spaced");
    EXPECT_EQ(ini.GetString("S", "B", ""), "quoted");
    EXPECT_EQ(ini.GetString("S", "C", ""), "'half");
    EXPECT_EQ(ini.GetString("S", "D", ""), std::string(254, 'x'));
    EXPECT_EQ(ini.GetString("S", "missing", "dflt  "), "dflt");
    EXPECT_EQ(ini.GetInt("S", "E", 5), 5);
    EXPECT_EQ(ini.GetString("S", "F", "dflt"), "");
    EXPECT_EQ(ini.GetString("S", "G", ""), "v");
}

TEST(IniFile, WritesReplaceInPlaceAndAddMissingKeysAndSections) {
    IniFile ini = Parsed("; kept\n[IRC]\nrealname=old\nOther=1\n\n[Empty]\n[Game]\nQueryTime=1\n");
    ini.WriteString("IRC", "RealName", "new");
    ini.WriteString("Empty", "K", "v");
    ini.WriteString("IRC", "ShowPing", "1");
    ini.WriteInt("Autopost", "SendDelay", 10);
    EXPECT_EQ(ini.Serialize(),
              "; kept\r\n[IRC]\r\nrealname=new\r\nOther=1\r\nShowPing=1\r\n\r\n[Empty]\r\nK=v\r\n[Game]\r\n"
              "QueryTime=1\r\n\r\n[Autopost]\r\nSendDelay=10\r\n");
}

TEST(IniFile, SaveCreatesTheFileAndLoadReadsItBack) {
    TempFolder folder;
    IniFile ini(folder.File("t.ini"));
    ini.Load();
    ini.WriteString("OnJoin", "Message", "caf\xE9 \xA7\xA7");
    ASSERT_TRUE(ini.Save());
    EXPECT_EQ(ReadBytes(folder.File("t.ini")), "[OnJoin]\r\nMessage=caf\xE9 \xA7\xA7\r\n");
    IniFile again(folder.File("t.ini"));
    again.Load();
    EXPECT_EQ(again.GetString("onjoin", "MESSAGE", ""), "caf\xE9 \xA7\xA7");
}

TEST(IniFile, FailedSaveKeepsTheOldFile) {
    TempFolder folder;
    WriteBytes(folder.File("plain"), "not a folder");
    IniFile ini(folder.File("plain") + "/t.ini");
    ini.WriteString("S", "K", "v");
    EXPECT_FALSE(ini.Save());
    EXPECT_EQ(ReadBytes(folder.File("plain")), "not a folder");
}

} // namespace
} // namespace tallybot::base
