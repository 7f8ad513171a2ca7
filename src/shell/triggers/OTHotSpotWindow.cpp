#include "shell/triggers/OTHotSpotWindow.h"

#include "platform/HotSpot.h"
#include "support/Geometry.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace {

// In points.
constexpr qreal corner = 4;
constexpr qreal thickness = 1;
// What an edge keeps clear at each end, so that it does not meet the corners.
constexpr qreal clearance = 28;

QRect primaryGeometry()
{
    const QScreen *const screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry() : QRect();
}

// Upwards, everything is counted from the lower edge of the primary screen's own height.
QRectF turnedOver(const QRectF &rect)
{
    return Geometry::flipped(rect, primaryGeometry().height());
}

QRectF orNone(const QRectF &rect)
{
    return rect.isEmpty() ? QRectF() : rect;
}

} // namespace

QRectF OTHotSpotWindow::hotSpotRect(int location, const QRectF &screenFrame)
{
    const qreal x = screenFrame.x();
    const qreal y = screenFrame.y();
    const qreal w = screenFrame.width();
    const qreal h = screenFrame.height();
    switch (location) {
    case 0:
        return {};
    case 1:
        return { x, y + h - corner, corner, corner };
    case 2:
        return orNone({ x, y + clearance, thickness, h - 2 * clearance });
    case 3:
        return { x, y, corner, corner };
    case 4:
        return orNone({ x + clearance, y, w - 2 * clearance, thickness });
    case 5:
        return { x + w - corner, y, corner, corner };
    case 6:
        return orNone({ x + w - thickness, y + clearance, thickness, h - 2 * clearance });
    default:
        return { x + w - corner, y + h - corner, corner, corner };
    }
}

QRectF OTHotSpotWindow::screenFrame()
{
    return turnedOver(primaryGeometry());
}

OTHotSpotWindow::OTHotSpotWindow(HotSpot &hotSpot, const QRectF &contentRect, Action action)
    : _hotSpot(hotSpot)
    , _view(turnedOver(contentRect).toRect(), std::move(action))
    , _isPlaced(!contentRect.isEmpty() && hotSpot.place(_view.geometry()))
{
    if (_isPlaced) {
        connect(&_hotSpot, &HotSpot::entered, &_view, &OTHotSpotView::mouseEntered);
        connect(&_hotSpot, &HotSpot::left, &_view, &OTHotSpotView::mouseExited);
    }
}

OTHotSpotWindow::~OTHotSpotWindow()
{
    if (_isPlaced) {
        _hotSpot.remove();
    }
}
