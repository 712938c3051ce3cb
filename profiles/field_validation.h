#pragma once
// The shared check of the options dialog's and the profile editor's text boxes, run when a box
// loses the focus. Pure: the dialog shows the message, turns its tab strip and refocuses the box.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallybot::profiles {

inline constexpr const char* kValidationTitle = "Invalid entry"; // message box title

// What the dialog does with one box's text.
struct ValidationResult {
    bool Accepted = true;
    std::string Message;  // shown to the user when refused; empty when accepted
    int TabPage = -1;     // page the tab strip turns to when refused; -1 when accepted
    bool Refocus = false; // put the focus back into the box

    bool operator==(const ValidationResult&) const = default;
};

// numeric: the box must hold a number (true) or a text that is not a number (false).
// maxValue below 1 means no upper limit; a value equal to maxValue is accepted.
ValidationResult ValidateTextBox(std::string_view text, bool numeric, std::int16_t tabIndex, std::int32_t maxValue);

// One of the seven validated boxes: which dialog, which setting or profile field, how it is checked.
struct TextBoxRule {
    const char* Dialog;  // "frmOptions" or "frmProfiles"
    const char* TextBox; // object name of the box
    const char* Field;   // settings or profile field it fills
    bool Numeric;
    std::int16_t TabIndex;
    std::int32_t MaxValue; // 0: no limit
};

// The rule for a box by its object name ("txtGamQueryTime"); none for boxes that are not checked.
std::optional<TextBoxRule> FindTextBoxRule(std::string_view textBox);

// ValidateTextBox with the box's own rule; a box without a rule is always accepted.
ValidationResult ValidateNamedTextBox(std::string_view textBox, std::string_view text);

} // namespace tallybot::profiles
