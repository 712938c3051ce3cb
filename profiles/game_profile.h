#pragma once
// A game profile says how to report one kind of game; the table holds up to 20 of them.

#include <array>
#include <string>

namespace tallybot::profiles {

struct GameProfile {
    std::string ProfileName; // file name less ".igp"
    std::string FileName;    // file name with extension
    std::string Description;
    int Engine = 0; // engine id; 0 marks a default profile
    std::string GameType;
    std::string GameName;
    std::string MessageStart; // templates, held unescaped in memory
    std::string Message;
    std::string MessageEnd;
    int StatusPosting = 0;
    int PostScoreChange = 0;
    int Interval = 0;
    int IntervalTime = 0;
    int IntervalInfo = 0;
    int Advanced = 0;
    int AutoTeams = 0;
    int Scoring = 0;
    int ScorePerCap = 0;
    int UseCustom = 0;

    bool operator==(const GameProfile&) const = default;
};

constexpr int kMaxProfiles = 20;

struct ProfileTable {
    std::array<GameProfile, kMaxProfiles + 1> Entries{}; // 1..20; entry 0 is the all-zero "no profile"
    int ProfileCount = 0;
    int CurrentProfile = 0; // 0: none
    int DefaultProfile = 0;

    // The profile every rule reads: the current one, or the all-zero entry 0 while none is chosen.
    const GameProfile& Active() const {
        return (CurrentProfile >= 1 && CurrentProfile <= kMaxProfiles) ? Entries[CurrentProfile] : Entries[0];
    }
};

} // namespace tallybot::profiles
