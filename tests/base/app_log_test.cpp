#include "base/app_log.h"
#include "tests/support/local_time.h"
#include "tests/support/temp_folder.h"

#include <chrono>
#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::base {
namespace {

using test::ReadBytes;
using test::TempFolder;

struct FakeShell : OperatorShell {
    std::vector<std::string> messages, titles, questions, questionTitles, opened;
    bool answer = false;
    void ShowMessage(const std::string& text, const std::string& title) override {
        messages.push_back(text);
        titles.push_back(title);
    }
    bool AskYesNo(const std::string& text, const std::string& title) override {
        questions.push_back(text);
        questionTitles.push_back(title);
        return answer;
    }
    void OpenExternal(const std::string& url) override { opened.push_back(url); }
};

// 2026-03-07 09:05:04 local time plus the given nanoseconds.
std::chrono::system_clock::time_point At(long long nanos) {
    return test::LocalTime(2026, 3, 7, 9, 5, 4) +
           std::chrono::duration_cast<std::chrono::system_clock::duration>(std::chrono::nanoseconds(nanos));
}

class AppLogTest : public ::testing::Test {
protected:
    clsAppLog MakeLog(std::string file = {}) {
        if (file.empty()) file = folder.File("Tallybot.log");
        return clsAppLog(file, "Tallybot", "1.2.3", &shell, [this] { return At(nanos); });
    }
    TempFolder folder;
    FakeShell shell;
    long long nanos = 123'000'000;
};

TEST_F(AppLogTest, MillisecondsAreTheRoundedFractionOfTheSecond) {
    clsAppLog log = MakeLog();
    struct {
        long long nanos;
        const char* stamp;
    } cases[] = {
        {0, "09:05:04.000"},
        {1'400'000, "09:05:04.001"},
        {999'400'000, "09:05:04.999"},
        {999'600'000, "09:05:04.000"}, // rounds over while the seconds stay
    };
    for (const auto& c : cases) {
        nanos = c.nanos;
        EXPECT_EQ(log.FormatEntry("m", "p", 0, "x"), std::string("m;p;03/07/26 ") + c.stamp + ";0;x");
    }
}

TEST_F(AppLogTest, CountsErrorsAndKeepsEveryEntryInMemory) {
    clsAppLog log = MakeLog();
    log.Log("modMain", "Main", 0, "Application startup, initializing", false, false, true);
    nanos = 456'000'000;
    log.Log("frmMain", "Form_Load", 13, "Type mismatch", true);
    log.Log("frmMain", "Form_Load", -1, "negative numbers are no errors");
    EXPECT_EQ(log.ErrorCount(), 1);
    EXPECT_EQ(log.LogText(), "modMain;Main;03/07/26 09:05:04.123;0;Application startup, initializing\r\n"
                             "frmMain;Form_Load;03/07/26 09:05:04.456;13;Type mismatch\r\n"
                             "frmMain;Form_Load;03/07/26 09:05:04.456;-1;negative numbers are no errors\r\n");
    EXPECT_EQ(shell.messages, std::vector<std::string>{
                                  "A error has occurred in frmMain in Form_Load\r\nError #13: Type mismatch\r\n\r\n"
                                  "Please close the program. You will then get the possibility to send an error report "
                                  "to the developer.\r\nAlternatively, you can also check the file Tallybot.log for "
                                  "details."});
}

// A run of months keeps its newest entries, whole, and still counts every error.
TEST_F(AppLogTest, MemoryKeepsTheNewestEntriesWithinItsLimit) {
    clsAppLog log = MakeLog(folder.File("sub/none.log")); // no file: only the memory matters
    const std::string message(200, 'x');
    const std::size_t entries = 2 * clsAppLog::kLogTextLimit / message.size();
    for (std::size_t i = 0; i < entries; ++i)
        log.Log("m", "p", 6, message + std::to_string(i));
    EXPECT_EQ(log.ErrorCount(), static_cast<int>(entries));
    EXPECT_LE(log.LogText().size(), clsAppLog::kLogTextLimit);
    EXPECT_GT(log.LogText().size(), clsAppLog::kLogTextLimit / 2);
    EXPECT_EQ(log.LogText().rfind("m;p;", 0), 0u);
    const std::string last = message + std::to_string(entries - 1) + "\r\n";
    EXPECT_EQ(log.LogText().substr(log.LogText().size() - last.size()), last);
}

TEST_F(AppLogTest, NewFileStartsTheFileAfresh) {
    clsAppLog log = MakeLog();
    log.Log("modMain", "Main", 0, "Application startup, initializing", false, false, true);
    log.Log("frmMain", "Form_Load", 0, "Form loaded");
    EXPECT_EQ(ReadBytes(log.LogFile()), log.LogText());
    log.Log("frmMain", "Form_Unload", 0, "Application terminated normally", false, false, true);
    const std::string last = "frmMain;Form_Unload;03/07/26 09:05:04.123;0;Application terminated normally\r\n";
    EXPECT_EQ(ReadBytes(log.LogFile()), last);
    // The whole run stays in memory.
    EXPECT_EQ(log.LogText(), "modMain;Main;03/07/26 09:05:04.123;0;Application startup, initializing\r\n"
                             "frmMain;Form_Load;03/07/26 09:05:04.123;0;Form loaded\r\n" +
                                 last);
}

TEST_F(AppLogTest, ShutdownQuestionStatesTheCountAndSendsTheReport) {
    clsAppLog log = MakeLog();
    log.Log("m", "p", 5, "Invalid procedure call or argument", false, true);
    log.HandleAppErrors();
    EXPECT_TRUE(shell.questions.empty()); // no address, no report
    EXPECT_TRUE(shell.opened.empty());
    log = MakeLog();
    log.ReportAddress = "dev@example.org";
    log.HandleAppErrors();
    EXPECT_TRUE(shell.questions.empty()); // no errors, no question
    for (int i = 0; i < 3; ++i)
        log.Log("modGamQuery", "ParseQ3", 9, "Subscript out of range");
    shell.answer = true;
    log.HandleAppErrors();
    ASSERT_EQ(shell.questions.size(), 1u);
    EXPECT_EQ(shell.questions[0], "Tallybot generated 3 error(s) during runtime. A log has been created.\r\n"
                                  "Would you like to send an error report to the application developer?");
    EXPECT_EQ(shell.questionTitles[0], "Send error log?");
    ASSERT_EQ(shell.opened.size(), 1u);
    const std::string prefix = "MailTo:dev@example.org&Subject=Error log from Tallybot 1.2.3&Body=User%20comments:%20"
                               "%0D%0A%0D%0ATime:%2003/07/26%2009:05:04%0D%0AOS%20Version:%20";
    EXPECT_EQ(shell.opened[0].substr(0, prefix.size()), prefix);
    const std::string tail = "clsAppLog;HandleAppErrors;03/07/26%2009:05:04.123;0;Generating%20error%20report%0D%0A";
    EXPECT_EQ(shell.opened[0].substr(shell.opened[0].size() - tail.size()), tail);
}

TEST(AppLogMailTo, Escaping) {
    EXPECT_EQ(clsAppLog::MailToText("x@y", "s t", "a & b"), "MailTo:x@y&Subject=s t&Body=a%20%26%20b");
    EXPECT_EQ(clsAppLog::MailToText("x@y", "", "l1\r\nl2\n"), "MailTo:x@y&Body=l1%0D%0Al2\n");
    EXPECT_EQ(clsAppLog::MailToText("x@y", "", ""), "MailTo:x@y");
}

TEST_F(AppLogTest, UnwritableFileIsReportedNotThrown) {
    test::WriteBytes(folder.File("plain"), "x");
    clsAppLog log = MakeLog(folder.File("plain") + "/Tallybot.log");
    log.Log("modMain", "Main", 0, "Application startup, initializing", false, false, true);
    ASSERT_EQ(shell.messages.size(), 1u);
    EXPECT_EQ(shell.messages[0], "Error number 76 in class AppLog, Sub WriteLogEntry");
    EXPECT_FALSE(log.LogText().empty());
}

} // namespace
} // namespace tallybot::base
