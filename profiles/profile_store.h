#pragma once
// The profile files: one INI file per game profile in the "Profiles" folder below the program
// folder, read into the profile table at start-up and written when the operator saves one.
// Failures never escape: they are written to the application log under its error trap.

#include <string>

namespace tallybot::profiles {

struct GameProfile;
struct ProfileSettings;

inline constexpr const char* kProfileFolder = "Profiles"; // below AppPath
inline constexpr const char* kProfileExtension = ".igp";

// AppPath + "Profiles" + separator.
std::string ProfileFolder(const ProfileSettings& settings);

// Lists the *.igp files of the profile folder, sorted by file name, into FileName of entries 1, 2, ...
// and returns how many were listed. A 21st file is an error (logged); the first 20 stay listed.
// A missing folder lists nothing and is not an error.
int ListProfiles(ProfileSettings& settings);

// Reads every key of one profile file into entry index; a missing key takes its default.
// ProfileName becomes the file name less its extension when fileName is not empty.
void LoadProfile(ProfileSettings& settings, int index, const std::string& fileName);

// Writes every key of entry index to the profile file, creating the folder and file when missing.
void SaveProfile(ProfileSettings& settings, const std::string& fileName, int index);

// Removes one profile file; a file that does not exist is logged as an error.
void DeleteProfile(ProfileSettings& settings, const std::string& fileName);

// Clears the table, lists and loads every profile file, and makes the last listed profile with
// engine 0 the default profile. CurrentProfile is left as it was.
void LoadAllProfiles(ProfileSettings& settings);

// A cleared table entry: empty texts, zero numbers, Scoring 3.
GameProfile ClearedProfile();

} // namespace tallybot::profiles
