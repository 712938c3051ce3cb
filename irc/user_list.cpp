#include "irc/user_list.h"

#include <algorithm>

namespace tallybot::irc {

void UserList::Add(std::string_view name) {
    UserEntry entry;
    if (!name.empty() && (name.front() == '@' || name.front() == '+')) {
        entry.Mark = std::string(1, name.front());
        name.remove_prefix(1);
    }
    if (name.empty() || m_entries.size() >= kLimit) return;
    entry.Nick = std::string(name);
    auto it = std::find_if(m_entries.begin(), m_entries.end(), [&](const UserEntry& e) { return e.Nick == name; });
    if (it != m_entries.end()) {
        *it = std::move(entry);
    } else {
        m_entries.push_back(std::move(entry));
    }
}

bool UserList::Remove(std::string_view nick) {
    auto it = std::find_if(m_entries.begin(), m_entries.end(), [&](const UserEntry& e) { return e.Nick == nick; });
    if (it == m_entries.end()) return false;
    m_entries.erase(it);
    return true;
}

bool UserList::Rename(std::string_view oldNick, std::string_view newNick) {
    auto it = std::find_if(m_entries.begin(), m_entries.end(), [&](const UserEntry& e) { return e.Nick == oldNick; });
    if (it == m_entries.end() || newNick.empty()) return false;
    it->Nick = std::string(newNick);
    return true;
}

bool UserList::SetMark(std::string_view nick, std::string_view mark) {
    auto it = std::find_if(m_entries.begin(), m_entries.end(), [&](const UserEntry& e) { return e.Nick == nick; });
    if (it == m_entries.end()) return false;
    it->Mark = std::string(mark);
    return true;
}

const UserEntry* UserList::Find(std::string_view nick) const {
    auto it = std::find_if(m_entries.begin(), m_entries.end(), [&](const UserEntry& e) { return e.Nick == nick; });
    return it == m_entries.end() ? nullptr : &*it;
}

} // namespace tallybot::irc
