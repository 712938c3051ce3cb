#include "base/app_log.h"

#include "base/vb_convert.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <exception>
#include <iostream>
#include <utility>

namespace tallybot::base {

namespace {

constexpr const char* kCrLf = "\r\n";

std::string TwoDigits(int value) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02d", value % 100);
    return buffer;
}

std::tm LocalTime(std::chrono::system_clock::time_point now) {
    std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    // to_time_t may round; keep the whole second at or below the time point.
    if (std::chrono::system_clock::from_time_t(seconds) > now) --seconds;
    std::tm local{};
    localtime_r(&seconds, &local);
    return local;
}

// "mm/dd/yy hh:nn:ss"
std::string DateTimeText(const std::tm& local) {
    return TwoDigits(local.tm_mon + 1) + "/" + TwoDigits(local.tm_mday) + "/" + TwoDigits(local.tm_year) + " " +
           TwoDigits(local.tm_hour) + ":" + TwoDigits(local.tm_min) + ":" + TwoDigits(local.tm_sec);
}

// The seconds since midnight formatted to three decimals, of which the last three digits are
// kept. The rounding can give "000" while the seconds field still shows the old second.
std::string MillisecondText(std::chrono::system_clock::time_point now) {
    std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    auto whole = std::chrono::system_clock::from_time_t(seconds);
    if (whole > now) whole -= std::chrono::seconds(1);
    auto nanos = std::chrono::duration_cast<std::chrono::nanoseconds>(now - whole).count();
    long long millis = (nanos + 500000) / 1000000;
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%03lld", millis % 1000);
    return buffer;
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    std::size_t pos = 0;
    while ((pos = text.find(from, pos)) != std::string::npos) {
        text.replace(pos, from.size(), to);
        pos += to.size();
    }
}

// The runtime's numbers for a file that cannot be opened.
long FileErrorNumber(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
        return 70; // Permission denied
    case ENOENT:
    case ENOTDIR:
        return 76; // Path not found
    default:
        return 75; // Path/File access error
    }
}

struct FileError {
    long number;
};

} // namespace

clsAppLog::clsAppLog(std::string logFile, std::string appTitle, std::string version, OperatorShell* shell, Clock clock)
    : m_logFile(std::move(logFile)), m_appTitle(std::move(appTitle)), m_version(std::move(version)), m_shell(shell),
      m_clock(std::move(clock)) {
    if (!m_clock) m_clock = [] { return std::chrono::system_clock::now(); };
}

void clsAppLog::Log(const std::string& module, const std::string& procedure, long errorNumber,
                    const std::string& message, bool showMessage, bool sendReport, bool newFile) {
    try {
        if (errorNumber > 0) ++m_errorCount;
        std::string entry = FormatEntry(module, procedure, errorNumber, message);
        m_logText += entry;
        m_logText += kCrLf;
        TrimLogText();
        WriteLogEntry(entry, newFile);
        if (showMessage && m_shell)
            m_shell->ShowMessage(ErrorMessageText(module, procedure, errorNumber, message), m_appTitle);
        if (sendReport && !ReportAddress.empty()) EmailError(ReportAddress, ReportSubject(), ReportBody());
    } catch (const vb::VbError& e) {
        ReportOwnError(e.Number(), "Log");
    } catch (const std::exception&) {
        ReportOwnError(1000, "Log");
    }
}

void clsAppLog::TrimLogText() {
    if (m_logText.size() <= kLogTextLimit) return;
    // The oldest whole entries go, down to three quarters of the limit, so trimming is rare.
    const std::size_t cut = m_logText.find(kCrLf, m_logText.size() - kLogTextLimit * 3 / 4);
    m_logText.erase(0, cut == std::string::npos ? m_logText.size() : cut + 2);
}

void clsAppLog::WriteLogEntry(const std::string& entry, bool newFile) {
    try {
        std::FILE* file = std::fopen(m_logFile.c_str(), newFile ? "wb" : "ab");
        if (!file) throw FileError{FileErrorNumber(errno)};
        std::string line = entry + kCrLf;
        bool written = std::fwrite(line.data(), 1, line.size(), file) == line.size();
        bool closed = std::fclose(file) == 0;
        if (!written || !closed) throw FileError{61}; // Disk full
    } catch (const FileError& e) {
        ReportOwnError(e.number, "WriteLogEntry");
    }
}

void clsAppLog::HandleAppErrors() {
    // Without an address there is nobody to send a report to, so nobody is asked.
    if (m_errorCount <= 0 || ReportAddress.empty() || !m_shell) return;
    std::string question = m_appTitle + " generated " + std::to_string(m_errorCount) +
                           " error(s) during runtime. A log has been created." + kCrLf +
                           "Would you like to send an error report to the application developer?";
    if (m_shell->AskYesNo(question, "Send error log?"))
        Log("clsAppLog", "HandleAppErrors", 0, "Generating error report", false, true, false);
}

void clsAppLog::EmailError(const std::string& address, const std::string& subject, const std::string& body) {
    try {
        if (m_shell) m_shell->OpenExternal(MailToText(address, subject, body));
    } catch (const vb::VbError& e) {
        ReportOwnError(e.Number(), "EmailError");
    } catch (const std::exception&) {
        ReportOwnError(1000, "EmailError");
    }
}

std::string clsAppLog::FormatEntry(const std::string& module, const std::string& procedure, long errorNumber,
                                   const std::string& message) const {
    auto now = m_clock();
    return module + ";" + procedure + ";" + DateTimeText(LocalTime(now)) + "." + MillisecondText(now) + ";" +
           std::to_string(errorNumber) + ";" + message;
}

std::string clsAppLog::ErrorMessageText(const std::string& module, const std::string& procedure, long errorNumber,
                                        const std::string& message) const {
    return "A error has occurred in " + module + " in " + procedure + kCrLf + "Error #" + std::to_string(errorNumber) +
           ": " + message + kCrLf + kCrLf +
           "Please close the program. You will then get the possibility to send an error report to the "
           "developer." +
           kCrLf + "Alternatively, you can also check the file " + m_appTitle + ".log for details.";
}

std::string clsAppLog::ReportSubject() const {
    return "Error log from " + m_appTitle + " " + m_version;
}

std::string clsAppLog::ReportBody() const {
    std::string body = "User comments: ";
    body += kCrLf;
    body += kCrLf;
    body += "Time: " + DateTimeText(LocalTime(m_clock())) + kCrLf;
    body += "OS Version: " + Facts.osVersion + kCrLf;
    body += "IE Version: " + Facts.browserVersion + kCrLf;
    body += "DirectX Version: " + Facts.graphicsVersion + kCrLf;
    body += "OS Language: " + Facts.osLanguage + kCrLf;
    body += "Memory: " + Facts.memory + kCrLf;
    body += kCrLf;
    body += "Log:";
    body += kCrLf;
    body += m_logText;
    return body;
}

std::string clsAppLog::MailToText(const std::string& address, const std::string& subject, const std::string& body) {
    // "&Subject=" instead of "?subject=" is how reports have always been addressed.
    std::string text = "MailTo:" + address;
    if (!subject.empty()) text += "&Subject=" + subject;
    if (!body.empty()) {
        std::string escaped = body;
        ReplaceAll(escaped, " ", "%20");
        ReplaceAll(escaped, "&", "%26");
        ReplaceAll(escaped, kCrLf, "%0D%0A");
        text += "&Body=" + escaped;
    }
    return text;
}

void clsAppLog::ReportOwnError(long number, const char* sub) noexcept {
    std::string text = "Error number " + std::to_string(number) + " in class AppLog, Sub " + sub;
    try {
        if (m_shell) {
            m_shell->ShowMessage(text, m_appTitle);
            return;
        }
    } catch (...) {
    }
    std::cerr << text << '\n';
}

} // namespace tallybot::base
