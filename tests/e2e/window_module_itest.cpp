// The window lives in libtallybot-window.so: the headless runner must map no GUI library, a command
// for a running instance needs neither the module nor a display, and a `tallybot` that cannot
// open its window must say so instead of failing obscurely.
#include "tests/e2e/tallybot_process.h"
#include "tests/support/temp_folder.h"

#include <filesystem>

#include <QProcess>

#include <gtest/gtest.h>

namespace tallybot::e2e {
namespace {

using tallybot::test::ReadBytes;
using tallybot::test::TempFolder;

TEST(WindowModuleTest, HeadlessRunnerMapsNoGuiLibrary) {
    TempFolder home;
    const QString homeArg = QString::fromStdString(home.Slash());
    std::filesystem::create_directories(home.File("Profiles")); // there, but empty: nothing gets copied
    const std::string warning = "No game profile in " + home.Slash() + "Profiles/";
    QProcess bot;
    bot.start(TallybotBinary(), {"--home", homeArg, "--headless"});
    ASSERT_TRUE(bot.waitForStarted(10000));
    // Delivered means the runner is up with everything it will ever load.
    ASSERT_TRUE(testsupport::WaitUntil([&] { return RunTallybot({"--home", homeArg, "--send", "DisGam"}) == 0; }));
    // Without --send and without a display, a command still reaches it; an unknown one is logged.
    EXPECT_EQ(RunTallybot({"--home", homeArg, "Hello"}, WithoutDisplay()), 0);
    EXPECT_TRUE(testsupport::WaitUntil([&] {
        return ReadBytes(home.File("Tallybot.log")).find(";0;Unknown remote command ignored: Hello\r\n") !=
               std::string::npos;
    })) << ReadBytes(home.File("Tallybot.log"));
    EXPECT_NE(ReadBytes(home.File("Tallybot.log")).find(";0;" + warning), std::string::npos);
    const std::string maps = ReadBytes("/proc/" + std::to_string(bot.processId()) + "/maps");
    ASSERT_NE(maps.find("libQt6Core"), std::string::npos);
    for (const char* library : {"libQt6Gui", "libQt6Widgets", "libGL", "libX11", "libxcb", "libfontconfig",
                                "libfreetype", "libtallybot-window"})
        EXPECT_EQ(maps.find(library), std::string::npos) << library;
    bot.terminate();
    ASSERT_TRUE(bot.waitForFinished(20000));
    EXPECT_EQ(bot.exitCode(), 0);
    EXPECT_NE(bot.readAllStandardError().toStdString().find("tallybot: warning: " + warning), std::string::npos);
}

TEST(WindowModuleTest, NoDisplayAndNoInstanceExitsWithStatusTwoNamingHeadless) {
    TempFolder home;
    std::string error;
    EXPECT_EQ(RunTallybot({"--home", QString::fromStdString(home.Slash()), "DisIRC"}, WithoutDisplay(), &error), 2);
    EXPECT_EQ(error, "tallybot: no display for the window (DISPLAY and WAYLAND_DISPLAY are not set) and no instance "
                     "running on this home; run it with --headless\n");
    // A display named but not there: the same way out, never an abort.
    QProcessEnvironment gone = WithoutDisplay();
    gone.insert("DISPLAY", ":97");
    gone.insert("QT_QPA_PLATFORM", "xcb");
    EXPECT_EQ(RunTallybot({"--home", QString::fromStdString(home.Slash())}, gone, &error), 2) << error;
    EXPECT_NE(error.find("tallybot: the window cannot open here; run it with --headless\n"), std::string::npos)
        << error;
    EXPECT_EQ(
        RunTallybot({"--home", QString::fromStdString(home.Slash()), "--send", "Hello"}, WithoutDisplay(), &error), 2);
    EXPECT_EQ(error.rfind("tallybot: unknown command Hello (ConIRC, DisIRC, ConGam or DisGam)\n", 0), 0u) << error;
}

TEST(WindowModuleTest, WindowWithoutItsModuleFailsWithAMessage) {
    TempFolder folder;
    const std::string copy = folder.File("tallybot");
    std::filesystem::copy_file(TallybotBinary().toStdString(), copy);
    QProcess bot;
    bot.start(QString::fromStdString(copy), {"--home", QString::fromStdString(folder.Slash())});
    ASSERT_TRUE(bot.waitForFinished(20000));
    EXPECT_EQ(bot.exitCode(), 1);
    const std::string error = bot.readAllStandardError().toStdString();
    const std::string dir = std::filesystem::path(copy).parent_path().string();
    EXPECT_EQ(error, "tallybot: The window module libtallybot-window.so was not found in " + dir + " or " + dir +
                         "/../lib/tallybot; run with --headless\n");
}

} // namespace
} // namespace tallybot::e2e
