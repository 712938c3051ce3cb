#include "gui/box_validation.h"

#include "gui/message_boxes.h"
#include "profiles/field_validation.h"

#include <algorithm>

#include <QFocusEvent>
#include <QLineEdit>
#include <QTabWidget>

namespace tallybot::desktop {

BoxValidator::BoxValidator(QTabWidget& tabs, MessageBoxes& boxes, QObject* parent)
    : QObject(parent), m_tabs(tabs), m_boxes(boxes) {}

void BoxValidator::Watch(QLineEdit* box) {
    m_watched.push_back(box);
    box->installEventFilter(this);
}

bool BoxValidator::Check(QLineEdit* box) {
    const auto result = profiles::ValidateNamedTextBox(ToBytes(box->objectName()), ToBytes(box->text()));
    if (result.Accepted) return true;
    // The message box takes the focus from the box; that focus change must not check again.
    m_refusing = true;
    m_boxes.Show(box->window(), profiles::kValidationTitle, FromBytes(result.Message));
    if (result.TabPage >= 0) m_tabs.setCurrentIndex(result.TabPage);
    if (result.Refocus) box->setFocus(Qt::OtherFocusReason);
    m_refusing = false;
    return false;
}

bool BoxValidator::CheckAll() {
    return std::all_of(m_watched.begin(), m_watched.end(), [this](QLineEdit* box) { return Check(box); });
}

bool BoxValidator::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut && !m_refusing) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        // Switching to another window or opening a menu is not leaving the box.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            auto* box = static_cast<QLineEdit*>(watched);
            if (box->window()->isVisible()) Check(box);
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tallybot::desktop
