#pragma once
// The input box's history: 101 slots, written from slot 0; the write index wraps from 100 to 1,
// so slot 0 is written once and at most 99 further lines are remembered.

#include <array>
#include <string>

namespace tallybot::irc {

class InputHistory {
public:
    static constexpr int kSlots = 101;

    void Store(const std::string& text);
    // Up steps back towards older lines and stays on slot 0; Down steps forward and gives an
    // empty line past the newest one. Before any line was entered both give an empty text.
    std::string Up();
    std::string Down();

    int WriteIndex() const { return m_write; }
    const std::string& Slot(int index) const { return m_slots.at(static_cast<std::size_t>(index)); }

private:
    std::array<std::string, kSlots> m_slots{};
    int m_write = 0;
    int m_cursor = 0;
    bool m_wrapped = false;
};

} // namespace tallybot::irc
