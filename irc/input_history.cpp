#include "irc/input_history.h"

namespace tallybot::irc {

void InputHistory::Store(const std::string& text) {
    m_slots[static_cast<std::size_t>(m_write)] = text;
    ++m_write;
    if (m_write == kSlots - 1) {
        m_write = 1;
        m_wrapped = true;
    }
    m_cursor = m_write;
}

std::string InputHistory::Up() {
    if (m_cursor > 0) --m_cursor;
    return m_slots[static_cast<std::size_t>(m_cursor)];
}

std::string InputHistory::Down() {
    const int newest = m_wrapped ? kSlots - 2 : m_write;
    if (m_cursor < newest) ++m_cursor;
    if (!m_wrapped && m_cursor == m_write) return {};
    return m_slots[static_cast<std::size_t>(m_cursor)];
}

} // namespace tallybot::irc
