#include "gui/window_geometry.h"

#include <algorithm>

namespace tallybot::desktop {

FirstPlacement FitToScreen(QSize wanted, QSize minimum, QRect available, QMargins frame) {
    const int roomWidth = std::max(1, available.width() - frame.left() - frame.right());
    const int roomHeight = std::max(1, available.height() - frame.top() - frame.bottom());
    const QSize size(std::min(wanted.width(), roomWidth), std::min(wanted.height(), roomHeight));
    const QSize lowered(std::min(minimum.width(), size.width()), std::min(minimum.height(), size.height()));
    const int outerWidth = size.width() + frame.left() + frame.right();
    const int outerHeight = size.height() + frame.top() + frame.bottom();
    const int left = available.x() + std::max(0, (available.width() - outerWidth) / 2);
    const int top = available.y() + std::max(0, (available.height() - outerHeight) / 2);
    return {QPoint(left, top), size, lowered};
}

} // namespace tallybot::desktop
