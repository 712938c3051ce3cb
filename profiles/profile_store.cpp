#include "profiles/profile_store.h"

#include "base/error_trap.h"
#include "base/escape_marks.h"
#include "base/ini_file.h"
#include "base/vb_convert.h"
#include "profiles/game_profile.h"
#include "profiles/profile_settings.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>
#include <vector>

namespace tallybot::profiles {

namespace fs = std::filesystem;

namespace {

constexpr const char* kModule = "modFileHelper";

std::string ProfilePath(const ProfileSettings& settings, const std::string& fileName) {
    return ProfileFolder(settings) + fileName;
}

// "*.igp" as the platform matches it: the extension compared without regard to case.
bool IsProfileFile(const std::string& name) {
    const std::string ext = kProfileExtension;
    if (name.size() <= ext.size()) return false;
    return std::equal(ext.begin(), ext.end(), name.end() - static_cast<std::ptrdiff_t>(ext.size()), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    });
}

// The folder's profile file names in listing order.
std::vector<std::string> ProfileFileNames(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code ec;
    if (!fs::is_directory(folder, ec)) return names; // no folder: no profiles, not an error
    fs::directory_iterator it(folder, ec);
    if (ec) throw vb::VbError(75, "Path/File access error: " + folder); // exists but cannot be read
    for (const auto& entry : it) {
        const std::string name = entry.path().filename().string();
        std::error_code typeEc;
        if (entry.is_regular_file(typeEc) && IsProfileFile(name)) names.push_back(name);
    }
    // As the original platform enumerates them: without regard to case, then byte order for names
    // equal but for case, so every file system lists them alike.
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
        const bool less = std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                                       [&](char x, char y) { return lower(x) < lower(y); });
        const bool more = std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(),
                                                       [&](char x, char y) { return lower(x) < lower(y); });
        return less || (!more && a < b);
    });
    return names;
}

// The platform's integer read: a value that is not a number reads as 0. That is noted in the log
// (not counted as an error), so an operator who mistyped a profile can find out why.
int ReadInt(const base::IniFile& ini, const char* section, const char* key, int defaultValue, base::clsAppLog* log) {
    const int value = ini.GetInt(section, key, defaultValue);
    const std::string raw = ini.GetString(section, key, "");
    const bool numeric =
        !raw.empty() &&
        (std::isdigit(static_cast<unsigned char>(raw[0])) ||
         ((raw[0] == '-' || raw[0] == '+') && raw.size() > 1 && std::isdigit(static_cast<unsigned char>(raw[1]))));
    if (!raw.empty() && !numeric && log) {
        log->Log(kModule, "LoadProfile", 0,
                 ini.Path() + ": [" + section + "] " + key + "=" + raw + " is not a number, read as 0");
    }
    return value;
}

std::string ReadText(const base::IniFile& ini, const char* section, const char* key) {
    return ini.GetString(section, key, "");
}

std::string ReadEscaped(const base::IniFile& ini, const char* section, const char* key) {
    std::string text = ReadText(ini, section, key);
    base::UnescapeControlCodes(text);
    return text;
}

} // namespace

std::string ProfileFolder(const ProfileSettings& settings) {
    return settings.AppPath + kProfileFolder + static_cast<char>(fs::path::preferred_separator);
}

GameProfile ClearedProfile() {
    GameProfile cleared;
    cleared.Scoring = 3;
    return cleared;
}

int ListProfiles(ProfileSettings& settings) {
    auto& table = settings.Profiles;
    int count = 0;
    base::Trap(settings.Log, kModule, "ListProfiles", [&] {
        for (const auto& name : ProfileFileNames(ProfileFolder(settings))) {
            if (count + 1 > kMaxProfiles) throw vb::SubscriptOutOfRange(); // the table holds 20
            ++count;
            table.Entries[count].FileName = name;
        }
    });
    return count;
}

void LoadProfile(ProfileSettings& settings, int index, const std::string& fileName) {
    base::Trap(settings.Log, kModule, "LoadProfile", [&] {
        if (index < 1 || index > kMaxProfiles) throw vb::SubscriptOutOfRange();
        auto& profile = settings.Profiles.Entries[index];
        if (!fileName.empty())
            profile.ProfileName = fileName.substr(0, fileName.size() - std::min<std::size_t>(4, fileName.size()));
        base::IniFile ini(ProfilePath(settings, fileName));
        ini.Load(); // a missing file reads as empty: every key takes its default
        profile.Description = ReadText(ini, "General", "Description");
        profile.Engine = ReadInt(ini, "Game", "Engine", 1, settings.Log);
        profile.GameType = ReadText(ini, "Game", "Type");
        profile.GameName = ReadText(ini, "Game", "Name");
        profile.MessageStart = ReadEscaped(ini, "Report", "MessageStart");
        profile.Message = ReadEscaped(ini, "Report", "Message");
        profile.MessageEnd = ReadEscaped(ini, "Report", "MessageEnd");
        profile.StatusPosting = ReadInt(ini, "Posting", "StatusPosting", 1, settings.Log);
        profile.PostScoreChange = ReadInt(ini, "Posting", "PostScoreChange", 0, settings.Log);
        profile.Interval = ReadInt(ini, "Posting", "Interval", 1, settings.Log);
        profile.IntervalTime = ReadInt(ini, "Posting", "IntervalTime", 1, settings.Log);
        profile.IntervalInfo = ReadInt(ini, "Posting", "IntervalInfo", 1, settings.Log);
        profile.Advanced = ReadInt(ini, "AdvInfo", "Advanced", 0, settings.Log);
        profile.AutoTeams = ReadInt(ini, "AdvInfo", "AutoTeams", 0, settings.Log);
        profile.Scoring = ReadInt(ini, "AdvInfo", "Scoring", 0, settings.Log);
        profile.ScorePerCap = ReadInt(ini, "AdvInfo", "ScorePerCap", 0, settings.Log);
        profile.UseCustom = ReadInt(ini, "Report", "UseCustom", 0, settings.Log);
    });
}

void SaveProfile(ProfileSettings& settings, const std::string& fileName, int index) {
    base::Trap(settings.Log, kModule, "SaveProfile", [&] {
        if (index < 1 || index > kMaxProfiles) throw vb::SubscriptOutOfRange();
        const auto& profile = settings.Profiles.Entries[index];
        std::error_code ec;
        fs::create_directories(ProfileFolder(settings), ec); // a fresh install may lack the folder
        base::IniFile ini(ProfilePath(settings, fileName));
        ini.Load(); // keys and lines of an existing file are replaced in place, others kept
        auto escaped = [](std::string text) {
            base::EscapeControlCodes(text);
            return text;
        };
        ini.WriteString("General", "Description", profile.Description);
        ini.WriteString("Game", "Engine", vb::CStr(profile.Engine));
        ini.WriteString("Game", "Name", profile.GameName);
        ini.WriteString("Game", "Type", profile.GameType);
        ini.WriteString("AdvInfo", "Advanced", vb::CStr(profile.Advanced));
        ini.WriteString("AdvInfo", "AutoTeams", vb::CStr(profile.AutoTeams));
        ini.WriteString("AdvInfo", "Scoring", vb::CStr(profile.Scoring));
        ini.WriteString("AdvInfo", "ScorePerCap", vb::CStr(profile.ScorePerCap));
        ini.WriteString("Posting", "PostScoreChange", vb::CStr(profile.PostScoreChange));
        ini.WriteString("Posting", "StatusPosting", vb::CStr(profile.StatusPosting));
        ini.WriteString("Posting", "Interval", vb::CStr(profile.Interval));
        ini.WriteString("Posting", "IntervalTime", vb::CStr(profile.IntervalTime));
        ini.WriteString("Posting", "IntervalInfo", vb::CStr(profile.IntervalInfo));
        ini.WriteString("Report", "MessageStart", escaped(profile.MessageStart));
        ini.WriteString("Report", "Message", escaped(profile.Message));
        ini.WriteString("Report", "MessageEnd", escaped(profile.MessageEnd));
        ini.WriteString("Report", "UseCustom", vb::CStr(profile.UseCustom));
        if (!ini.Save()) throw vb::VbError(75, "Path/File access error: " + ini.Path());
    });
}

void DeleteProfile(ProfileSettings& settings, const std::string& fileName) {
    base::Trap(settings.Log, kModule, "DeleteProfile", [&] {
        const std::string path = ProfilePath(settings, fileName);
        std::error_code ec;
        if (!fs::is_regular_file(path, ec)) throw vb::VbError(53, "File not found");
        if (!fs::remove(path, ec) || ec) throw vb::VbError(75, "Path/File access error");
    });
}

void LoadAllProfiles(ProfileSettings& settings) {
    auto& table = settings.Profiles;
    for (int i = 1; i <= kMaxProfiles; ++i)
        table.Entries[i] = ClearedProfile();
    table.ProfileCount = ListProfiles(settings);
    table.DefaultProfile = 0;
    for (int i = 1; i <= table.ProfileCount; ++i) {
        LoadProfile(settings, i, table.Entries[i].FileName);
        if (table.Entries[i].Engine == 0) table.DefaultProfile = i; // the last one listed wins
    }
}

} // namespace tallybot::profiles
