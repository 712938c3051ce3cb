#pragma once
// A fixed local wall-clock time as a time point, for tests whose output carries a date and time.

#include <chrono>
#include <ctime>

namespace tallybot::test {

inline std::chrono::system_clock::time_point LocalTime(int year, int month, int day, int hour, int minute,
                                                       int second) {
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = hour;
    t.tm_min = minute;
    t.tm_sec = second;
    t.tm_isdst = -1;
    return std::chrono::system_clock::from_time_t(std::mktime(&t));
}

} // namespace tallybot::test
