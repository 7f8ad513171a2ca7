#include "shell/panel/PanelFrame.h"

#include <algorithm>
#include <cmath>

namespace {

// What a panel with the largest grid leaves free, both edges together.
constexpr double FreeSpace = 32;
// A panel that is no farther from the middle still counts as standing there.
constexpr double CentreTolerance = 16;
constexpr double ResizeTime = 1.2;
constexpr double ResizeTimePerScreen = 0.2;

double diagonal(const QRectF &rect)
{
    return std::hypot(rect.width(), rect.height());
}

double constrainedLow(double low, double length, double visibleLow, double visibleLength)
{
    if (low < visibleLow) {
        return std::ceil(visibleLow);
    }
    const double visibleHigh = visibleLow + visibleLength;
    return low + length > visibleHigh ? std::floor(visibleHigh - length) : low;
}

} // namespace

QSizeF PanelFrame::sizeForGrid(const QSizeF &viewSize, const PanelMargins &margins)
{
    return { std::round(viewSize.width() + margins.left + margins.right),
        std::round(viewSize.height() + margins.top + margins.bottom) };
}

QSizeF PanelFrame::maxIconViewSize(const QRectF &visibleFrame, const PanelMargins &margins)
{
    return { std::max(visibleFrame.width() - margins.left - margins.right - FreeSpace, 0.0),
        std::max(visibleFrame.height() - margins.top - margins.bottom - FreeSpace, 0.0) };
}

QRectF PanelFrame::centredOn(const QRectF &rect, const QSizeF &size)
{
    // The middle is the same in both directions of y.
    const QPointF low = rect.center() - QPointF(size.width(), size.height()) / 2;
    return { QPointF(std::round(low.x()), std::round(low.y())), size };
}

QRectF PanelFrame::constrained(const QRectF &frame, const QRectF &visibleFrame)
{
    if (frame.width() > visibleFrame.width() && frame.height() > visibleFrame.height()) {
        return {};
    }
    const QPointF low(
        constrainedLow(frame.x(), frame.width(), visibleFrame.x(), visibleFrame.width()),
        constrainedLow(frame.y(), frame.height(), visibleFrame.y(), visibleFrame.height()));
    return { low, frame.size() };
}

bool PanelFrame::isAwayFromCentre(const QRectF &frame, const QRectF &visibleFrame)
{
    const QPointF distance = frame.center() - visibleFrame.center();
    return std::abs(distance.x()) > CentreTolerance || std::abs(distance.y()) > CentreTolerance;
}

double PanelFrame::animationResizeTime(
    const QRectF &from, const QRectF &to, const QSizeF &screenSize)
{
    const double screen = std::max(screenSize.width(), screenSize.height());
    const double change = std::abs(diagonal(to) - diagonal(from));
    return screen > 0 ? ResizeTime + ResizeTimePerScreen * change / screen : ResizeTime;
}
