#pragma once
// Template expansion: placeholders ("%map%"), colour marks ("$ec$", "$ic$", "$pv$") and the
// capture condition "#fca#". Every posted line and every dialog preview goes through it.

#include "reporting/report_context.h"

#include <array>
#include <string>
#include <string_view>

namespace tallybot::reporting {

struct TemplateMark {
    std::string_view mark;
    std::string_view pickerEntry; // as listed in the placeholder picker
};

// The 22 marks in the picker's order.
extern const std::array<TemplateMark, 22> kTemplateMarks;

// The mark a picker entry inserts: its first five characters, trimmed.
std::string MarkOfPickerEntry(std::string_view entry);

// Major, minor and revision of this build joined by ".".
std::string ProgramVersion();

// Expands one template. In preview mode the fixed sample values are used and the state is left
// alone; otherwise the last posted scores may move and the capping player is cleared once named.
// Throws vb::VbError (capping slot or player count beyond 50, overflow); callers trap it, so no
// partial line is ever posted.
std::string ExpandTemplate(const ReportContext& ctx, ReportingState& state, std::string_view text, bool preview,
                           bool resetScores);

// Replaces every occurrence, left to right, without rescanning inserted text.
std::string ReplaceAll(std::string text, std::string_view from, std::string_view to);

// Blanks removed at both ends (spaces only, as the dialogs' trim does).
std::string TrimBlanks(std::string_view text);

} // namespace tallybot::reporting
