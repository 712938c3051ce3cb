#include "gui/colour_boxes.h"

#include "base/vb_convert.h"
#include "gui/irc_palette.h"

#include <functional>

#include <QHBoxLayout>
#include <QToolButton>

namespace tallybot::desktop {

ColourBoxes::ColourBoxes(const QString& baseName, QWidget* parent) : QWidget(parent) {
    setObjectName(baseName);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(3);
    for (int i = 0; i < 16; ++i) {
        auto* box = new QToolButton(this);
        box->setObjectName(QString("%1(%2)").arg(baseName).arg(i));
        box->setCheckable(true);
        box->setFixedSize(22, 22);
        box->setToolTip(QString("Colour %1").arg(i));
        box->setStyleSheet(QString("QToolButton { background: %1; border: 1px solid #999; border-radius: 3px; }"
                                   "QToolButton:checked { border: 3px solid #1d6fd6; }")
                               .arg(IrcPaletteColour(i).name()));
        connect(box, &QToolButton::clicked, this, [this, i] {
            Choose(i);
            if (Changed) Changed(i);
        });
        row->addWidget(box);
        m_boxes.push_back(box);
    }
    row->addStretch();
}

void ColourBoxes::Choose(int index) {
    m_chosen = (index >= 0 && index < 16) ? index : -1;
    for (int i = 0; i < 16; ++i)
        m_boxes[static_cast<std::size_t>(i)]->setChecked(i == m_chosen);
}

int ColourNumberOf(const std::string& prefix) {
    if (prefix.size() < 2) return -1;
    const std::string digits = prefix.substr(1);
    if (digits.find_first_not_of("0123456789") != std::string::npos) return -1;
    const double value = vb::Val(digits);
    return (value >= 0 && value <= 15) ? static_cast<int>(value) : -1;
}

} // namespace tallybot::desktop
