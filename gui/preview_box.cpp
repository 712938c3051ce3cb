#include "gui/preview_box.h"

#include "app/app_settings.h"
#include "gui/irc_palette.h"
#include "gui/message_boxes.h"
#include "reporting/irc_preview.h"
#include "reporting/templates.h"

#include <exception>

#include <QFontMetrics>
#include <QTextCursor>
#include <QTextEdit>

namespace tallybot::desktop {

void PaintPreview(QTextEdit& box, std::string_view line) {
    box.clear();
    QTextCursor cursor(box.document());
    for (const auto& run : reporting::RenderIrcPreview(line)) {
        QTextCharFormat format;
        format.setForeground(PreviewColour(run.colour));
        format.setFontWeight(run.bold ? QFont::Bold : QFont::Normal);
        format.setFontUnderline(run.underline);
        cursor.insertText(FromBytes(run.text), format);
    }
    cursor.movePosition(QTextCursor::End);
    box.setTextCursor(cursor);
}

void PreviewTemplate(QTextEdit& box, const app::AppSettings& settings, const std::string& text) {
    // Preview mode reads neither the game state nor the team boxes, only the colour settings.
    app::AppSettings copy = settings;
    query::GameState game;
    reporting::ReportingState state;
    const std::string none;
    const reporting::ReportContext ctx{copy, game, none, none, none, nullptr};
    try {
        PaintPreview(box, reporting::ExpandTemplate(ctx, state, text, true, false));
    } catch (const std::exception&) {
        box.clear();
    }
}

QTextEdit* MakePreviewBox(const char* objectName) {
    auto* box = new QTextEdit;
    box->setObjectName(objectName);
    box->setReadOnly(true);
    box->setLineWrapMode(QTextEdit::WidgetWidth);
    box->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    box->setFocusPolicy(Qt::NoFocus);
    const int line = QFontMetrics(box->font()).lineSpacing();
    box->setFixedHeight(line * 2 + 12);
    box->setStyleSheet("QTextEdit { background: white; }");
    return box;
}

} // namespace tallybot::desktop
