#include "profiles/field_validation.h"

#include "base/vb_convert.h"

#include <array>
#include <utility>

namespace tallybot::profiles {

namespace {

constexpr std::array<TextBoxRule, 7> kRules{{
    {"frmOptions", "txtDefGamPort", "DefaultPort", true, 2, 0},
    {"frmOptions", "txtGamQueryTime", "QueryTime", true, 2, 32000},
    // The send delay counts at most 255 ticks, yet its box accepts up to 32000; both limits stay.
    {"frmOptions", "txtIRCSendDelay", "SendDelay", true, 2, 32000},
    {"frmOptions", "txtIRCIdentEmail", "IdentEmail", false, 1, 0},
    {"frmOptions", "txtIRCRealName", "RealName", false, 1, 0},
    {"frmProfiles", "txtIntervalTime", "IntervalTime", true, 4, 32000},
    {"frmProfiles", "txtScorePerCap", "ScorePerCap", true, 3, 255},
}};

// A number in the platform's sense: sign, decimal point, exponent and surrounding blanks allowed.
bool IsNumeric(std::string_view text) {
    try {
        vb::ParseNumber(text);
        return true;
    } catch (const vb::VbError&) {
        return false;
    }
}

ValidationResult Refuse(std::string message, std::int16_t tabIndex) {
    return ValidationResult{false, std::move(message), tabIndex, true};
}

} // namespace

ValidationResult ValidateTextBox(std::string_view text, bool numeric, std::int16_t tabIndex, std::int32_t maxValue) {
    if (numeric) {
        if (text.empty()) return Refuse("You left the textbox empty. Please enter a value.", tabIndex);
        if (!IsNumeric(text)) return Refuse("You did not enter a valid number. Please enter a valid value.", tabIndex);
        if (maxValue >= 1 && vb::Val(text) > static_cast<double>(maxValue)) {
            return Refuse("You did not enter a valid number. Please enter a valid value up to " + vb::CStr(maxValue) +
                              ".",
                          tabIndex);
        }
        return {};
    }
    if (text.empty()) return Refuse("You left the textbox empty. Please enter a text.", tabIndex);
    // An all-digit real name or e-mail address is refused on purpose.
    if (IsNumeric(text)) return Refuse("You did not enter a valid text. Please enter a text.", tabIndex);
    return {};
}

std::optional<TextBoxRule> FindTextBoxRule(std::string_view textBox) {
    for (const auto& rule : kRules) {
        if (textBox == rule.TextBox) return rule;
    }
    return std::nullopt;
}

ValidationResult ValidateNamedTextBox(std::string_view textBox, std::string_view text) {
    const auto rule = FindTextBoxRule(textBox);
    if (!rule) return {};
    return ValidateTextBox(text, rule->Numeric, rule->TabIndex, rule->MaxValue);
}

} // namespace tallybot::profiles
