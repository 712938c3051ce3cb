#include "app/command_line.h"
#include "base/remote_message.h"
#include "tests/support/temp_folder.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace tallybot::app {
namespace {

struct CommandLineCase {
    std::vector<std::string> args;
    CommandLine expected;
};

CommandLine Line(std::string home, bool headless, bool send, std::string command, std::string error = {},
                 void (*more)(CommandLine&) = nullptr) {
    CommandLine line;
    if (more) more(line);
    line.home = std::move(home);
    line.headless = headless;
    line.send = send;
    line.command = std::move(command);
    line.error = std::move(error);
    return line;
}

TEST(CommandLineTest, ParsesEveryForm) {
    const std::vector<CommandLineCase> cases = {
        {{}, Line("", false, false, "")},
        {{"--headless"}, Line("", true, false, "")},
        {{"--home", "/srv/tb", "--headless", "ConGam:1.2.3.4:27960"},
         Line("/srv/tb", true, false, "ConGam:1.2.3.4:27960")},
        {{"--home=/srv/tb", "--send", "DisGam"}, Line("/srv/tb", false, true, "DisGam")},
        {{"ConIRC:irc.example.org:6667:#a", "b"}, Line("", false, false, "ConIRC:irc.example.org:6667:#a b")},
        {{"--send"}, Line("", false, true, "", "--send needs a command such as DisGam")},
        {{"--home"}, Line("", false, false, "", "--home needs a folder")},
        {{"--frobnicate"}, Line("", false, false, "", "unknown option --frobnicate")},
        {{"-x"}, Line("", false, false, "", "unknown option -x")},
        {{"--send", "Hello"},
         Line("", false, true, "Hello", "unknown command Hello (ConIRC, DisIRC, ConGam or DisGam)")},
        {{"Hello"}, Line("", false, false, "Hello")}, // the running instance logs and ignores it
        {{"-V"}, Line("", false, false, "", {}, [](CommandLine& l) { l.version = true; })},
        {{"-v"}, Line("", false, false, "", {}, [](CommandLine& l) { l.version = true; })},
        {{"-h"}, Line("", false, false, "", {}, [](CommandLine& l) { l.help = true; })},
        {{"--headless", "--color=never", "--raw"},
         Line("", true, false, "", {}, [](CommandLine& l) { l.color = ColorChoice::Never, l.raw = true; })},
        {{"--color", "always"}, Line("", false, false, "", {}, [](CommandLine& l) { l.color = ColorChoice::Always; })},
        {{"--color=sometimes"}, Line("", false, false, "", "--color needs auto, always or never")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ParseCommandLine(c.args), c.expected) << ::testing::PrintToString(c.args);
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
