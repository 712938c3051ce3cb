#include "app/settings_file.h"

#include "app/app_settings.h"
#include "base/escape_marks.h"
#include "base/ini_file.h"

#include <array>
#include <filesystem>
#include <string_view>

namespace tallybot::app {

namespace {

std::string Position(int i, const char* word) {
    return std::to_string(i) + word;
}

// The colour prefix in memory is code 3 and the digits; the file holds only the digits.
std::string ColourFromFile(const std::string& digits) {
    return "\x03" + digits;
}
std::string ColourToFile(const std::string& prefix) {
    return prefix.empty() ? std::string() : prefix.substr(1);
}

void LoadExtras(const base::IniFile& ini, base::ExtrasSettings& x) {
    const char* s = "Extras";
    x.IrcTls = ini.GetInt(s, "IrcTls", 0);
    x.IrcTlsVerify = ini.GetInt(s, "IrcTlsVerify", 1);
    x.IrcTlsPinSha256 = ini.GetString(s, "IrcTlsPinSha256", "");
    x.IrcPassword = ini.GetString(s, "IrcPassword", "");
    x.SaslMechanism = ini.GetString(s, "SaslMechanism", "");
    x.SaslUser = ini.GetString(s, "SaslUser", "");
    x.SaslPassword = ini.GetString(s, "SaslPassword", "");
    x.ClientCertFile = ini.GetString(s, "ClientCertFile", "");
    x.ClientKeyFile = ini.GetString(s, "ClientKeyFile", "");
    x.AutoReconnect = ini.GetInt(s, "AutoReconnect", 0);
    x.PacedSending = ini.GetInt(s, "PacedSending", 0);
    x.IdentEnabled = ini.GetInt(s, "IdentEnabled", 1);
    x.IdentPort = ini.GetInt(s, "IdentPort", 113);
    x.IrcEncoding = ini.GetString(s, "IrcEncoding", "Latin-1");
    x.ModernQuake3 = ini.GetInt(s, "ModernQuake3", 0);
    x.A2SQuery = ini.GetInt(s, "A2SQuery", 0);
    x.IPv6 = ini.GetInt(s, "IPv6", 0);
    x.GameColoursToIrc = ini.GetInt(s, "GameColoursToIrc", 0);
    x.TwoDigitColours = ini.GetInt(s, "TwoDigitColours", 0);
    x.ReportAddress = ini.GetString(s, "ReportAddress", "");
    x.WinWidth = ini.GetInt(s, "WinWidth", 0);
    x.WinHeight = ini.GetInt(s, "WinHeight", 0);
    x.UserFromIdent = ini.GetInt(s, "UserFromIdent", 0);
    x.ShowErrorNumerics = ini.GetInt(s, "ShowErrorNumerics", 0);
    x.JoinAfter422 = ini.GetInt(s, "JoinAfter422", 0);
    x.TrailingAfterPrefix = ini.GetInt(s, "TrailingAfterPrefix", 0);
    x.NickFrom001 = ini.GetInt(s, "NickFrom001", 0);
    x.QueryRetry = ini.GetInt(s, "QueryRetry", 0);
}

void SaveExtras(base::IniFile& ini, const base::ExtrasSettings& x) {
    const char* s = "Extras";
    ini.WriteInt(s, "IrcTls", x.IrcTls);
    ini.WriteInt(s, "IrcTlsVerify", x.IrcTlsVerify);
    ini.WriteString(s, "IrcTlsPinSha256", x.IrcTlsPinSha256);
    ini.WriteString(s, "IrcPassword", x.IrcPassword);
    ini.WriteString(s, "SaslMechanism", x.SaslMechanism);
    ini.WriteString(s, "SaslUser", x.SaslUser);
    ini.WriteString(s, "SaslPassword", x.SaslPassword);
    ini.WriteString(s, "ClientCertFile", x.ClientCertFile);
    ini.WriteString(s, "ClientKeyFile", x.ClientKeyFile);
    ini.WriteInt(s, "AutoReconnect", x.AutoReconnect);
    ini.WriteInt(s, "PacedSending", x.PacedSending);
    ini.WriteInt(s, "IdentEnabled", x.IdentEnabled);
    ini.WriteInt(s, "IdentPort", x.IdentPort);
    ini.WriteString(s, "IrcEncoding", x.IrcEncoding);
    ini.WriteInt(s, "ModernQuake3", x.ModernQuake3);
    ini.WriteInt(s, "A2SQuery", x.A2SQuery);
    ini.WriteInt(s, "IPv6", x.IPv6);
    ini.WriteInt(s, "GameColoursToIrc", x.GameColoursToIrc);
    ini.WriteInt(s, "TwoDigitColours", x.TwoDigitColours);
    ini.WriteString(s, "ReportAddress", x.ReportAddress);
    ini.WriteInt(s, "WinWidth", x.WinWidth);
    ini.WriteInt(s, "WinHeight", x.WinHeight);
    ini.WriteInt(s, "UserFromIdent", x.UserFromIdent);
    ini.WriteInt(s, "ShowErrorNumerics", x.ShowErrorNumerics);
    ini.WriteInt(s, "JoinAfter422", x.JoinAfter422);
    ini.WriteInt(s, "TrailingAfterPrefix", x.TrailingAfterPrefix);
    ini.WriteInt(s, "NickFrom001", x.NickFrom001);
    ini.WriteInt(s, "QueryRetry", x.QueryRetry);
}

} // namespace

void ApplyPresentDayExtras(base::ExtrasSettings& x) {
    x.ModernQuake3 = 1;
    x.PacedSending = 1; // today's servers drop a client that floods them (a CTCP burst, a command storm)
    x.TwoDigitColours = 1;
    x.UserFromIdent = 1;
    x.ShowErrorNumerics = 1;
    x.JoinAfter422 = 1;
    x.TrailingAfterPrefix = 1;
    x.NickFrom001 = 1;
    x.QueryRetry = 1;
}

void LoadSettings(AppSettings& st) {
    base::IniFile ini(st.AppPath + kSettingsFileName);
    const bool newHome = !std::filesystem::exists(st.AppPath + kSettingsFileName);
    ini.Load();

    st.MinToTray = ini.GetInt("General", "MinToTray", 1);
    st.KeepOnTop = ini.GetInt("General", "KeepOnTop", 0);
    st.RemWinPos = ini.GetInt("General", "RemWinPos", 0);
    st.WinTop = ini.GetInt("General", "WinTop", 500);
    st.WinLeft = ini.GetInt("General", "WinLeft", 500);
    st.WinState = ini.GetInt("General", "WinState", 0);
    st.ModWinTop = ini.GetInt("General", "ModWinTop", 100);
    st.ModWinLeft = ini.GetInt("General", "ModWinLeft", 100);

    for (int i = 1; i <= kHistorySize; ++i) {
        st.IrcServer[i] = ini.GetString("IRC", Position(i, "Server"), "");
        st.IrcPort[i] = ini.GetInt("IRC", Position(i, "Port"), 0);
        st.IrcChannel[i] = ini.GetString("IRC", Position(i, "Channel"), "");
        st.IrcNick[i] = ini.GetString("IRC", Position(i, "Nick"), "");
    }
    st.ExtTextCol = ColourFromFile(ini.GetString("IRC", "ExtTextCol", "10"));
    st.InfoTextCol = ColourFromFile(ini.GetString("IRC", "InfoTextCol", "2"));
    st.IdentEmail = ini.GetString("IRC", "IdentEmail", AppSettings{}.IdentEmail);
    st.RealName = ini.GetString("IRC", "RealName", "tallybot");
    st.IrcTimeStamp = ini.GetInt("IRC", "TimeStamp", 0);
    st.ShowPing = ini.GetInt("IRC", "ShowPing", 1);
    st.PerformEnable = ini.GetInt("IRC", "PerformEnable", 0);
    st.PerformCmd = ini.GetString("IRC", "PerformCmd", "");

    st.OnJoinEnabled = ini.GetInt("OnJoin", "Enabled", 0);
    st.OnJoinMessage = ini.GetString("OnJoin", "Message", "");
    base::UnescapeControlCodes(st.OnJoinMessage);
    st.NoticeEnabled = ini.GetInt("OnJoin", "EnableNotice", 0);
    st.NoticeMsg = ini.GetString("OnJoin", "NoticeMsg", "");
    base::UnescapeControlCodes(st.NoticeMsg);

    for (int i = 1; i <= kHistorySize; ++i)
        st.GameHost[i] = ini.GetString("Game", Position(i, "Host"), "");
    st.QueryTime = ini.GetInt("Game", "QueryTime", 1000);
    st.DoLog = ini.GetInt("Game", "DoLog", 0);
    st.LogFolder = ini.GetString("Game", "LogFolder", "");
    st.GameLogTimeStamp = ini.GetInt("Game", "TimeStamp", 0);
    st.LogInclDate = ini.GetInt("Game", "InclDate", 1);
    st.DefaultPort = ini.GetInt("Game", "DefaultPort", 27960);
    st.Reconnect = ini.GetInt("Game", "Reconnect", 1);

    st.SendDelay = ini.GetInt("Autopost", "SendDelay", 10);
    st.AllowAbout = ini.GetInt("Autopost", "AllowAbout", 1);
    st.AllowInfo = ini.GetInt("Autopost", "AllowInfo", 1);
    st.AllowUserComm = ini.GetInt("Autopost", "AllowUserComm", 1);
    st.AllowPlayerInfo = ini.GetInt("Autopost", "AllowPlayerInfo", 1);
    st.AllowServInfo = ini.GetInt("Autopost", "AllowServInfo", 1);
    st.AllowTeamInfo = ini.GetInt("Autopost", "AllowTeamInfo", 1);
    st.AllowCustom = ini.GetInt("Autopost", "AllowCustom", 1);
    st.AllowSPlayerInfo = ini.GetInt("Autopost", "AllowSPlayerInfo", 1);
    st.AllowSServerInfo = ini.GetInt("Autopost", "AllowSServerInfo", 1);
    st.AllowSTeamInfo = ini.GetInt("Autopost", "AllowSTeamInfo", 1);
    st.CommandParameter = ini.GetInt("Autopost", "CommandParameter", 0);

    LoadExtras(ini, st.Extras);
    if (newHome) ApplyPresentDayExtras(st.Extras);
}

void SaveSettings(AppSettings& st) {
    base::IniFile ini(st.AppPath + kSettingsFileName);
    ini.Load(); // values are replaced in place, other lines stay

    ini.WriteInt("General", "MinToTray", st.MinToTray);
    ini.WriteInt("General", "KeepOnTop", st.KeepOnTop);
    ini.WriteInt("General", "RemWinPos", st.RemWinPos);
    ini.WriteInt("General", "WinTop", st.WinTop);
    ini.WriteInt("General", "WinLeft", st.WinLeft);
    ini.WriteInt("General", "WinState", st.WinState);
    ini.WriteInt("General", "ModWinTop", st.ModWinTop);
    ini.WriteInt("General", "ModWinLeft", st.ModWinLeft);

    for (int i = 1; i <= kHistorySize; ++i) {
        ini.WriteString("IRC", Position(i, "Server"), st.IrcServer[i]);
        ini.WriteInt("IRC", Position(i, "Port"), st.IrcPort[i]);
        ini.WriteString("IRC", Position(i, "Channel"), st.IrcChannel[i]);
        ini.WriteString("IRC", Position(i, "Nick"), st.IrcNick[i]);
    }
    ini.WriteString("IRC", "ExtTextCol", ColourToFile(st.ExtTextCol));
    ini.WriteString("IRC", "InfoTextCol", ColourToFile(st.InfoTextCol));
    ini.WriteString("IRC", "IdentEmail", st.IdentEmail);
    ini.WriteString("IRC", "RealName", st.RealName);
    ini.WriteInt("IRC", "TimeStamp", st.IrcTimeStamp);
    ini.WriteInt("IRC", "ShowPing", st.ShowPing);
    ini.WriteInt("IRC", "PerformEnable", st.PerformEnable);
    ini.WriteString("IRC", "PerformCmd", st.PerformCmd);

    // The record's own texts are escaped; saving happens only at shutdown.
    ini.WriteInt("OnJoin", "Enabled", st.OnJoinEnabled);
    base::EscapeControlCodes(st.OnJoinMessage);
    ini.WriteString("OnJoin", "Message", st.OnJoinMessage);
    ini.WriteInt("OnJoin", "EnableNotice", st.NoticeEnabled);
    base::EscapeControlCodes(st.NoticeMsg);
    ini.WriteString("OnJoin", "NoticeMsg", st.NoticeMsg);

    for (int i = 1; i <= kHistorySize; ++i)
        ini.WriteString("Game", Position(i, "Host"), st.GameHost[i]);
    ini.WriteInt("Game", "QueryTime", st.QueryTime);
    ini.WriteInt("Game", "DoLog", st.DoLog);
    ini.WriteString("Game", "LogFolder", st.LogFolder);
    ini.WriteInt("Game", "TimeStamp", st.GameLogTimeStamp);
    ini.WriteInt("Game", "InclDate", st.LogInclDate);
    ini.WriteInt("Game", "DefaultPort", st.DefaultPort);
    ini.WriteInt("Game", "Reconnect", st.Reconnect);

    // The allow flags go out in an order of their own.
    ini.WriteInt("Autopost", "SendDelay", st.SendDelay);
    ini.WriteInt("Autopost", "AllowAbout", st.AllowAbout);
    ini.WriteInt("Autopost", "AllowInfo", st.AllowInfo);
    ini.WriteInt("Autopost", "AllowUserComm", st.AllowUserComm);
    ini.WriteInt("Autopost", "AllowPlayerInfo", st.AllowPlayerInfo);
    ini.WriteInt("Autopost", "AllowServInfo", st.AllowServInfo);
    ini.WriteInt("Autopost", "AllowTeamInfo", st.AllowTeamInfo);
    ini.WriteInt("Autopost", "AllowSTeamInfo", st.AllowSTeamInfo);
    ini.WriteInt("Autopost", "AllowSPlayerInfo", st.AllowSPlayerInfo);
    ini.WriteInt("Autopost", "AllowSServerInfo", st.AllowSServerInfo);
    ini.WriteInt("Autopost", "AllowCustom", st.AllowCustom);
    ini.WriteInt("Autopost", "CommandParameter", st.CommandParameter);

    SaveExtras(ini, st.Extras);

    ini.Save(); // a failed write goes unreported
}

} // namespace tallybot::app
