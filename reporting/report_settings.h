#pragma once
// What match reporting reads of the settings record: the two colour strings, the on-join texts and
// section [Autopost]. The parts form one chain (shared, profiles, query, reporting) rather than a
// diamond, so the record has one copy of the shared part and stays a plain value.

#include "query/query_settings.h"

#include <string>

namespace tallybot::reporting {

struct ReportSettings : query::QuerySettings {
    std::string ExtTextCol = "\x03"
                             "10"; // ready-to-send colour prefix
    std::string InfoTextCol = "\x03"
                              "2";

    // [OnJoin]
    int OnJoinEnabled = 0;
    std::string OnJoinMessage;
    int NoticeEnabled = 0;
    std::string NoticeMsg;

    // [Autopost]
    int SendDelay = 10;
    int AllowAbout = 1;
    int AllowInfo = 1;
    int AllowUserComm = 1;
    int AllowPlayerInfo = 1;
    int AllowServInfo = 1;
    int AllowTeamInfo = 1;
    int AllowCustom = 1;
    int AllowSPlayerInfo = 1;
    int AllowSServerInfo = 1;
    int AllowSTeamInfo = 1;
    int CommandParameter = 0;
};

} // namespace tallybot::reporting
