#include "query/game_data_log.h"

#include <cstdio>

namespace tallybot::query {

namespace {

// Lines end in CR LF, as every text file of the program does.
constexpr std::string_view kLineBreak = "\r\n";

} // namespace

std::string ShortDateText(const LocalDateTime& now) {
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", now.Year, now.Month, now.Day);
    return text;
}

std::string DateTimeText(const LocalDateTime& now) {
    char text[16];
    std::snprintf(text, sizeof text, " %02d:%02d:%02d", now.Hour, now.Minute, now.Second);
    return ShortDateText(now) + text;
}

std::string GameLogFileName(std::string_view serverField, bool inclDate, const LocalDateTime& now) {
    if (inclDate) return std::string(serverField.substr(0, serverField.find(':'))) + " " + ShortDateText(now) + ".log";
    std::string name(serverField);
    for (char& c : name)
        if (c == ':') c = '-';
    return name + ".log";
}

bool GameDataLog::Open(const std::string& path, bool append) {
    Close();
    m_path = path;
    m_file.open(path, std::ios::binary | (append ? std::ios::app : std::ios::trunc));
    return m_file.is_open();
}

void GameDataLog::WriteStarted(const LocalDateTime& now) {
    WriteLine("Started Game Server Query @ " + DateTimeText(now));
}

void GameDataLog::WriteStopped(const LocalDateTime& now) {
    WriteLine("Stopped Game Server Query @ " + DateTimeText(now));
}

void GameDataLog::WriteReply(std::string_view reply) {
    WriteLine(reply);
}

void GameDataLog::Close() {
    if (m_file.is_open()) m_file.close();
    m_file.clear();
}

void GameDataLog::WriteLine(std::string_view text) {
    if (!m_file.is_open()) return;
    m_file << text << kLineBreak;
    m_file.flush();
}

} // namespace tallybot::query
