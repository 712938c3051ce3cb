#include "gui/tallybot_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tallybot::desktop {

namespace {

// packaging/tallybot.svg on its 64x64 grid: a speech bubble holding a tally of four strokes and a
// fifth across.
QPixmap Painted(int side) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(side / 64.0, side / 64.0);
    QPainterPath bubble;
    bubble.addRoundedRect(QRectF(4, 8, 56, 40), 6, 6);
    QPainterPath tail;
    tail.moveTo(14, 47);
    tail.lineTo(26, 47);
    tail.lineTo(14, 58);
    tail.closeSubpath();
    bubble = bubble.united(tail);
    p.setPen(QPen(QColor("#0d3362"), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(QColor("#1f5fa8"));
    p.drawPath(bubble);
    p.setPen(QPen(Qt::white, 4, Qt::SolidLine, Qt::RoundCap));
    for (const int x : {18, 26, 34, 42})
        p.drawLine(QPointF(x, 16), QPointF(x, 40));
    p.setPen(QPen(QColor("#f2b134"), 4, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(13, 36), QPointF(49, 20));
    return pixmap;
}

} // namespace

QIcon TallybotIcon() {
    QIcon icon(":/tallybot/tallybot.svg");
    if (!icon.pixmap(64, 64).isNull()) return icon;
    QIcon painted;
    for (const int side : {16, 22, 32, 48, 64, 128, 256})
        painted.addPixmap(Painted(side));
    return painted;
}

} // namespace tallybot::desktop
