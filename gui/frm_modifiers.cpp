#include "gui/frm_modifiers.h"

#include "app/app_settings.h"
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
    move(m_settings.ModWinLeft, m_settings.ModWinTop);
    QDialog::showEvent(event);
}

void frmModifiers::hideEvent(QHideEvent* event) {
    m_settings.ModWinLeft = pos().x();
    m_settings.ModWinTop = pos().y();
    QDialog::hideEvent(event);
}

} // namespace tallybot::desktop
