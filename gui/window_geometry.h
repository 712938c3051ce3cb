#pragma once
// Where the main window first appears: its wanted size shrunk to the screen's free area (title bar
// and frame included), then centred on that area, never starting above or left of it.

#include <QMargins>
#include <QRect>
#include <QSize>

namespace tallybot::desktop {

struct FirstPlacement {
    QPoint topLeft; // of the frame, as QWidget::move takes it
    QSize size;     // of the client area, as QWidget::resize takes it
    QSize minimum;  // the minimum size, lowered where the screen is smaller
    bool operator==(const FirstPlacement&) const = default;
};

// frame: the window manager's decoration around the client area (title bar on top).
FirstPlacement FitToScreen(QSize wanted, QSize minimum, QRect available, QMargins frame);

} // namespace tallybot::desktop
