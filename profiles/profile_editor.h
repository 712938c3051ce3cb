#pragma once
// The profile editor's fixed texts and its two rules that need no window: how a new profile's
// file is named, and that the profile named "Default" is never deleted.

#include <string>

namespace tallybot::profiles {

inline constexpr const char* kNewProfilePrompt = "Name of new profile:";
inline constexpr const char* kNewProfileTitle = "Create a new game profile";
inline constexpr const char* kDefaultNotDeleted = "The default profile should not be deleted. It ensures proper "
                                                  "functionality with games for which no profile exists.";
inline constexpr const char* kDeleteQuestion = "Do you really want to delete this profile?";
inline constexpr const char* kDeleteTitle = "Delete profile?";

// The file a new profile is saved to at once: the name as typed followed by ".igp".
inline std::string NewProfileFileName(const std::string& name) {
    return name + ".igp";
}

// Only the profile named exactly "Default" is protected; any other is deleted after the question.
inline bool IsProtectedProfile(const std::string& profileName) {
    return profileName == "Default";
}

} // namespace tallybot::profiles
