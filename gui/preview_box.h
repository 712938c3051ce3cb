#pragma once
// The dialogs' preview of a template: expanded with the sample data, painted like an IRC client
// would show it.

#include <string>
#include <string_view>

class QTextEdit;

namespace tallybot::app {
struct AppSettings;
}

namespace tallybot::desktop {

// Paints one line that already holds IRC control codes.
void PaintPreview(QTextEdit& box, std::string_view line);

// Expands a template in preview mode (sample data, shared state untouched) with the colours of
// the given settings, then paints it. A template that fails to expand leaves the box empty.
void PreviewTemplate(QTextEdit& box, const app::AppSettings& settings, const std::string& text);

// A read-only single-line-high rich text box for previews.
QTextEdit* MakePreviewBox(const char* objectName);

} // namespace tallybot::desktop
