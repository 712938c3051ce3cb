#include "app/command_line.h"
#include "base/remote_message.h"
#include "tests/support/fixture_file.h"
#include "tests/support/temp_folder.h"

#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>

namespace tallybot::app {
namespace {

// The fields that differ from a plain start, in the words of tests/data/app/command_line.txt.
std::string Describe(const CommandLine& l) {
    std::string out;
    const auto add = [&](bool on, const std::string& text) {
        if (on) out += " " + text;
    };
    add(!l.home.empty(), "home=" + l.home);
    for (const auto& [on, name] : {std::pair{l.headless, "headless"},
                                   {l.send, "send"},
                                   {l.version, "version"},
                                   {l.help, "help"},
                                   {l.raw, "raw"}})
        add(on, name);
    add(l.color != ColorChoice::Auto, l.color == ColorChoice::Always ? "color=always" : "color=never");
    add(!l.command.empty(), "command=" + l.command);
    add(!l.error.empty(), "error=" + l.error);
    return out;
}

TEST(CommandLineTest, ParsesEveryFormOfTheTable) {
    std::istringstream table(test::ReadFixture("app/command_line.txt"));
    for (std::string row; std::getline(table, row);) {
        if (row.empty() || row[0] == '#') continue;
        const auto arrow = row.find(" =>");
        std::istringstream words(row.substr(0, arrow));
        std::vector<std::string> args;
        for (std::string word; words >> word;)
            args.push_back(word);
        std::string expected = row.substr(arrow + 3);
        expected.erase(expected.find_last_not_of(' ') + 1);
        EXPECT_EQ(Describe(ParseCommandLine(args)), expected) << row;
    }
}

TEST(CommandLineTest, WindowOnlyWhereQtFindsADisplay) {
    // DISPLAY, WAYLAND_DISPLAY, QT_QPA_PLATFORM -> a window can open
    const std::vector<std::tuple<const char*, const char*, const char*, bool>> cases = {
        {"", "", "", false},          {":0", "", "", true},           {"", "wayland-0", "", true},
        {"", "", "offscreen", true},  {"", "", "xcb", false},         {":1", "", "xcb:nograb", true},
        {":1", "", "wayland", false}, {"", "", "wayland;xcb", false}, {"", "w-0", "wayland-egl;xcb", true},
    };
    for (const auto& [display, wayland, platform, expected] : cases)
        EXPECT_EQ(CanOpenWindow(display, wayland, platform), expected) << display << "|" << wayland << "|" << platform;
}

TEST(CommandLineTest, HomeFolderChoice) {
    test::TempFolder program;
    EXPECT_EQ(ResolveHomeFolder("/given", program.Slash(), "/xdg", "/home/u"), "/given");
    EXPECT_EQ(ResolveHomeFolder("", program.Slash(), "/xdg", "/home/u"), program.Slash());
    EXPECT_EQ(ResolveHomeFolder("", "/nonexistent-folder", "/xdg", "/home/u"), "/xdg/tallybot");
    EXPECT_EQ(ResolveHomeFolder("", "/nonexistent-folder", "", "/home/u"), "/home/u/.config/tallybot");

    // An installed bin/ folder is never the home, even when writable.
    std::filesystem::create_directories(program.File("bin"));
    std::filesystem::create_directories(program.File("share/tallybot"));
    EXPECT_EQ(ResolveHomeFolder("", program.File("bin"), "/xdg", "/home/u"), "/xdg/tallybot");
}

TEST(CommandLineTest, FirstRunCopiesShippedProfilesOnce) {
    test::TempFolder root;
    std::filesystem::create_directories(root.File("shipped"));
    test::WriteBytes(root.File("shipped/Default.igp"), "[Game]\r\nEngine=0\r\n");
    test::WriteBytes(root.File("shipped/notes.txt"), "x");

    EXPECT_EQ(PrepareHomeFolder(root.File("bare"), {}), root.File("bare") + "/");
    EXPECT_TRUE(std::filesystem::is_directory(root.File("bare"))); // created even with nothing to copy
    const std::string home = PrepareHomeFolder(root.File("home"), {root.File("missing"), root.File("shipped")});
    EXPECT_EQ(home, root.File("home") + "/");
    EXPECT_EQ(test::ReadBytes(root.File("home/Profiles/Default.igp")), "[Game]\r\nEngine=0\r\n");
    EXPECT_FALSE(std::filesystem::exists(root.File("home/Profiles/notes.txt")));

    // The operator's own edits survive later starts.
    test::WriteBytes(root.File("home/Profiles/Default.igp"), "edited");
    PrepareHomeFolder(root.File("home"), {root.File("shipped")});
    EXPECT_EQ(test::ReadBytes(root.File("home/Profiles/Default.igp")), "edited");
}

TEST(RemoteMessageTest, OnlyIdentifierThreeCarriesACommandCutAtZeroAnd255Bytes) {
    EXPECT_EQ(base::DecodeRemoteMessage(base::EncodeRemoteMessage("DisGam")), "DisGam");
    EXPECT_EQ(base::DecodeRemoteMessage(std::string("\003ConGam\0junk", 12)), "ConGam");
    EXPECT_EQ(base::DecodeRemoteMessage(base::EncodeRemoteMessage("DisGam", 4)), std::nullopt);
    EXPECT_EQ(base::DecodeRemoteMessage(""), std::nullopt);
    const std::string longText(300, 'x');
    EXPECT_EQ(base::DecodeRemoteMessage("\x03" + longText)->size(), 255u);
    EXPECT_EQ(base::EncodeRemoteMessage(longText).size(), 256u);
}

} // namespace
} // namespace tallybot::app
