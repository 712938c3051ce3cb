#pragma once
// The channel's user list: nicks in arrival order, each with its mark ("@" operator, "+" voice
// or none). Entries are keyed by the nick without its mark.

#include <string>
#include <string_view>
#include <vector>

namespace tallybot::irc {

struct UserEntry {
    std::string Nick;
    std::string Mark; // "", "@" or "+"
    bool operator==(const UserEntry&) const = default;
    std::string Shown() const { return Mark + Nick; }
};

class UserList {
public:
    // A name as reply 353 gives it; a leading "@" or "+" becomes the mark.
    void Add(std::string_view name);
    bool Remove(std::string_view nick);
    bool Rename(std::string_view oldNick, std::string_view newNick);
    bool SetMark(std::string_view nick, std::string_view mark);
    void Clear() { m_entries.clear(); }

    const std::vector<UserEntry>& Entries() const { return m_entries; }
    const UserEntry* Find(std::string_view nick) const;

    // A hostile NAMES flood cannot grow the list without end.
    static constexpr std::size_t kLimit = 10000;

private:
    std::vector<UserEntry> m_entries;
};

} // namespace tallybot::irc
