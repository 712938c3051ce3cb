#pragma once
// The application log: every informational entry and every trapped error goes through Log().
// Entries go to a file beside the program and into LogText(); errors are counted so the operator
// can be offered an error report at shutdown.

#include <chrono>
#include <functional>
#include <string>

namespace tallybot::base {

// What the log needs from the desktop: message boxes and the shell's "open". The window
// implements it with dialogs; the headless runner prints to stderr and answers every question "no".
class OperatorShell {
public:
    virtual ~OperatorShell() = default;
    virtual void ShowMessage(const std::string& text, const std::string& title) = 0;
    virtual bool AskYesNo(const std::string& text, const std::string& title) = 0;
    virtual void OpenExternal(const std::string& url) = 0;
};

// Facts about the machine that go into the error report.
struct SystemFacts {
    std::string osVersion;
    std::string browserVersion;
    std::string graphicsVersion;
    std::string osLanguage;
    std::string memory; // "avail/total physical, avail/total virtual"
};

// Reads the facts of this machine (kernel name and release, locale, memory in KB from the
// kernel's counters); fields that cannot be found stay empty. Called once at start-up.
SystemFacts CollectSystemFacts();

class clsAppLog {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    clsAppLog(std::string logFile, std::string appTitle, std::string version, OperatorShell* shell,
              Clock clock = nullptr);

    void Log(const std::string& module, const std::string& procedure, long errorNumber, const std::string& message,
             bool showMessage = false, bool sendReport = false, bool newFile = false);
    void HandleAppErrors();
    void EmailError(const std::string& address, const std::string& subject, const std::string& body);

    // Pure builders, exposed for tests.
    std::string FormatEntry(const std::string& module, const std::string& procedure, long errorNumber,
                            const std::string& message) const;
    std::string ErrorMessageText(const std::string& module, const std::string& procedure, long errorNumber,
                                 const std::string& message) const;
    static std::string MailToText(const std::string& address, const std::string& subject, const std::string& body);
    std::string ReportSubject() const; // "Error log from <title> <version>"
    std::string ReportBody() const;    // facts, the time and the whole LogText

    int ErrorCount() const { return m_errorCount; }
    // The run's entries for the error report: the newest ones, at most kLogTextLimit bytes, so a
    // program that runs for months holds a bounded log.
    const std::string& LogText() const { return m_logText; }
    static constexpr std::size_t kLogTextLimit = 256 * 1024;
    const std::string& LogFile() const { return m_logFile; }
    std::string ReportAddress; // empty: no report is offered
    SystemFacts Facts;

private:
    void WriteLogEntry(const std::string& entry, bool newFile);
    void TrimLogText();
    void ReportOwnError(long number, const char* sub) noexcept; // never logged again

    std::string m_logFile;
    std::string m_appTitle;
    std::string m_version;
    OperatorShell* m_shell;
    Clock m_clock;
    int m_errorCount = 0;
    std::string m_logText;
};

} // namespace tallybot::base
