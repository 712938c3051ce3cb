#include "gui/frm_modifiers.h"

#include "app/app_settings.h"
#include "base/error_trap.h"
#include "base/window_units.h"
#include "gui/message_boxes.h"
#include "reporting/templates.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

namespace tallybot::desktop {

frmModifiers::frmModifiers(app::AppSettings& settings, QWidget* parent)
    : QDialog(parent, Qt::Tool), m_settings(settings), m_list(new QListWidget) {
    setObjectName("frmModifiers");
    setWindowTitle("Placeholders");
    if (m_settings.KeepOnTop == 1) setWindowFlag(Qt::WindowStaysOnTopHint);
    m_list->setObjectName("lstModifiers");
    for (const auto& mark : reporting::kTemplateMarks)
        m_list->addItem(QString::fromLatin1(mark.pickerEntry.data(), static_cast<qsizetype>(mark.pickerEntry.size())));
    auto* hint = new QLabel("Double-click a placeholder to insert it at the caret.");
    hint->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addWidget(hint);
    resize(300, 420);
    connect(m_list, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) { Choose(m_list->row(item)); });
}

void frmModifiers::SetTarget(QLineEdit* target) {
    m_target = target;
}

void frmModifiers::Choose(int row) {
    if (!m_target || row < 0 || row >= m_list->count()) return;
    const std::string mark = reporting::MarkOfPickerEntry(ToBytes(m_list->item(row)->text()));
    m_target->insert(FromBytes(mark)); // replaces the selection, leaves the caret after the mark
}

void frmModifiers::showEvent(QShowEvent* event) {
    move(base::TwipsToPixels(m_settings.ModWinLeft, logicalDpiX()),
         base::TwipsToPixels(m_settings.ModWinTop, logicalDpiY()));
    QDialog::showEvent(event);
}

void frmModifiers::hideEvent(QHideEvent* event) {
    // A position beyond the file's range (never on a real screen) leaves the stored one as it was.
    base::ResumeNext([&] { m_settings.ModWinLeft = base::PixelsToTwips(pos().x(), logicalDpiX()); });
    base::ResumeNext([&] { m_settings.ModWinTop = base::PixelsToTwips(pos().y(), logicalDpiY()); });
    QDialog::hideEvent(event);
}

} // namespace tallybot::desktop
