// Where the name of an application stands beside its icon, as arithmetic.
//
// Rectangles are in points with y growing upwards from the lower edge of the view, as in
// Geometry.h. A label that is no larger than the view lies within it, wherever the icon is.

#pragma once

#include <QRectF>
#include <QSizeF>

struct LabelPlace
{
    QSizeF viewSize;
    // As the preferences of these names have it. Orientations from 2 on put the label beside the
    // icon where there is room, which may leave no gap between them; the others below it. A
    // tablet's hand covers what lies below the finger and, where it comes from the right, what lies
    // to its right.
    qint64 groupOrientation = 0;
    bool tabletMode = false;
    qint64 tabletHandedness = 1;

    // The place of a label of the given size, on whole points.
    QRectF rectFor(const QRectF &icon, const QSizeF &label) const;

private:
    qreal leftBeside(const QRectF &icon, qreal width) const;
    qreal bottomAwayFrom(const QRectF &icon, qreal height) const;
};
