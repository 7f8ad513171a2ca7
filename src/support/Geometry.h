// Rectangles and points with y growing upwards, as the grid's figures are given, and the one step
// that turns them into a widget's own.
//
// A rectangle is kept in a QRectF whose x() and y() are its low corner; QRectF's own words top,
// bottom and contains() speak of the other direction and are not used on such a rectangle.

#pragma once

#include <QPointF>
#include <QRectF>

namespace Geometry {

// Whether a point lies in a rectangle, y upwards: the left and the upper edge belong to it, the
// right and the lower one do not. A rectangle without a positive extent holds no point.
inline bool mouseInRect(const QPointF &point, const QRectF &rect)
{
    return point.x() >= rect.x() && point.x() < rect.x() + rect.width() && point.y() > rect.y()
        && point.y() <= rect.y() + rect.height();
}

// Turns a rectangle over in an area of the given height; turning twice gives the rectangle back.
inline QRectF flipped(const QRectF &rect, qreal height)
{
    return { rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height() };
}

inline QPointF flipped(const QPointF &point, qreal height)
{
    return { point.x(), height - point.y() };
}

} // namespace Geometry
