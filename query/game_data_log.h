#pragma once
// The game data log: the raw replies of one server, written while the query runs, one file per
// server in the log folder. Opened by the first reply of a run, closed by the first reply that
// arrives after the query stopped.

#include <fstream>
#include <string>
#include <string_view>

namespace tallybot::query {

// Local calendar time as the caller read it; core logic never reads the clock itself.
struct LocalDateTime {
    int Year = 2000;
    int Month = 1;
    int Day = 1;
    int Hour = 0;
    int Minute = 0;
    int Second = 0;
};

// The short date used in file names and stamps: "yyyy-mm-dd" (no separators a file name forbids).
std::string ShortDateText(const LocalDateTime& now);
// Date and time of the start and stop lines: "yyyy-mm-dd hh:mm:ss".
std::string DateTimeText(const LocalDateTime& now);

// File name (without folder) for a server field such as "1.2.3.4:27960": "1.2.3.4-27960.log", or
// with the date "1.2.3.4 2026-11-21.log" (the server part before the ":" only).
std::string GameLogFileName(std::string_view serverField, bool inclDate, const LocalDateTime& now);

class GameDataLog {
public:
    // Opens (closing any open file first) for appending or from empty; false when the file
    // cannot be opened, in which case later writes do nothing.
    bool Open(const std::string& path, bool append);
    void WriteStarted(const LocalDateTime& now);
    void WriteStopped(const LocalDateTime& now);
    // The reply as received, then a line break.
    void WriteReply(std::string_view reply);
    void Close();
    bool IsOpen() const { return m_file.is_open(); }
    const std::string& Path() const { return m_path; }

private:
    void WriteLine(std::string_view text);

    std::ofstream m_file;
    std::string m_path;
};

} // namespace tallybot::query
