#include "shell/selector/LabelPlace.h"

#include <algorithm>
#include <cmath>

namespace {

// Between icon and label, in points.
constexpr qreal Gap = 4;
// No place to the left or right.
constexpr qreal Nowhere = -1;
constexpr qint64 FromTheRight = 1;

// The low end counts where there is no room for both.
qreal kept(qreal value, qreal low, qreal high)
{
    return std::max(low, std::min(value, high));
}

} // namespace

QRectF LabelPlace::rectFor(const QRectF &icon, const QSizeF &label) const
{
    const qreal width = label.width();
    const qreal height = label.height();
    qreal left = groupOrientation >= 2 ? leftBeside(icon, width) : Nowhere;
    qreal bottom = 0;
    if (left != Nowhere) {
        bottom = std::floor(icon.y() + (icon.height() - height) / 2);
        bottom = kept(bottom, 0, viewSize.height() - height);
    } else {
        left = std::floor(icon.x() + (icon.width() - width) / 2);
        left = kept(left, std::max(0.0, icon.x() - Gap - width),
            std::min(viewSize.width() - width, icon.x() + icon.width() + Gap));
        bottom = bottomAwayFrom(icon, height);
    }
    return QRectF(QRectF(left, bottom, width, height).toAlignedRect());
}

qreal LabelPlace::leftBeside(const QRectF &icon, qreal width) const
{
    if (tabletMode && tabletHandedness == FromTheRight) {
        return width <= icon.x() ? std::max(0.0, icon.x() - Gap - width) : Nowhere;
    }
    const qreal right = icon.x() + icon.width();
    const qreal last = viewSize.width() - width;
    return right <= last ? std::min(right + Gap, last) : Nowhere;
}

qreal LabelPlace::bottomAwayFrom(const QRectF &icon, qreal height) const
{
    const qreal below = icon.y() - Gap - height;
    const qreal above = icon.y() + icon.height() + Gap;
    const qreal highest = viewSize.height() - height;
    const bool isAbove = tabletMode ? above <= highest : below < 0;
    return isAbove ? std::min(above, highest) : std::max(below, 0.0);
}
