#include "shell/IconProgress.h"

#include <QPainter>
#include <QRect>

#include <algorithm>

namespace {

// From a lower left corner at a twelfth of the width and height, five sixths of either: the same
// distance from every edge, so it does not matter where y grows. On whole pixels, to be sharp.
QRect frameOf(const QSize &size)
{
    const int x = qRound(size.width() / 12.0);
    const int y = qRound(size.height() / 12.0);
    return { QPoint(x, y), size - 2 * QSize(x, y) };
}

} // namespace

QImage IconProgress::progressIcon(const QImage &blankIcon, int step, int count)
{
    if (blankIcon.isNull() || count < 1) {
        return {};
    }
    QImage icon = blankIcon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const qreal ratio = icon.devicePixelRatio();
    icon.setDevicePixelRatio(1);

    const int line = qMax(1, qRound(ratio));
    const QRect frame = frameOf(icon.size());
    const QRect inside = frame.adjusted(line, line, -line, -line);
    const qreal done = qreal(std::clamp(step, 0, count)) / count;
    QRect bar = inside;
    bar.setWidth(qRound(inside.width() * done));

    QPainter painter(&icon);
    painter.setClipRegion(QRegion(frame) - inside + bar);
    painter.fillRect(frame, Qt::white);
    painter.end();
    icon.setDevicePixelRatio(ratio);
    return icon;
}
