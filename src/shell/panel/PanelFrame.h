// Where the panel stands and how large it is, as arithmetic.
//
// Rectangles are in points with y growing upwards, as in Geometry.h; Geometry::flipped() turns one
// into Qt's. What is rounded is rounded to whole points, halves away from zero, unless it says
// otherwise.

#pragma once

#include <QRectF>
#include <QSizeF>

// From the edges of the grid to those of the panel, in points.
struct PanelMargins
{
    unsigned left = 0;
    unsigned right = 0;
    unsigned top = 0;
    unsigned bottom = 0;
};

namespace PanelFrame {

// The panel round a grid of the given size, rounded.
QSizeF sizeForGrid(const QSizeF &viewSize, const PanelMargins &margins);

// The largest grid in a panel that keeps 16 points from each edge of the visible frame; never
// negative.
QSizeF maxIconViewSize(const QRectF &visibleFrame, const PanelMargins &margins);

// A frame of the given size on the middle of a rectangle, its low corner rounded.
QRectF centredOn(const QRectF &rect, const QSizeF &size);

// The frame moved the least distance that brings it into the visible frame, onto whole points
// within it; one that is inside already stays as it is. One that sticks out on both sides is moved
// to the low edge. A frame that is larger in both dimensions gives the zero rectangle.
QRectF constrained(const QRectF &frame, const QRectF &visibleFrame);

// Whether the middles are more than 16 points apart on either axis.
bool isAwayFromCentre(const QRectF &frame, const QRectF &visibleFrame);

// Seconds for an animated change from one frame to another: 1.2, and 0.2 more for a diagonal that
// changes by the longer side of the screen. Without a screen nothing is added.
double animationResizeTime(const QRectF &from, const QRectF &to, const QSizeF &screenSize);

} // namespace PanelFrame
