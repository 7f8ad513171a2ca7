// The shapes that the views draw, and the two questions about colours that go with them.
//
// Rectangles are a painter's own: y grows downwards, so that Up points at the smaller y. A shape
// fills its rectangle; in an empty rectangle it is the empty path.

#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <QString>

enum class Pointing { Up, Down, Left, Right };

// Isosceles: the apex lies in the middle of one side, the base is the side across.
QPainterPath trianglePath(const QRectF &rect, Pointing pointing);
// Corners are quarters of a circle; a radius of more than half the shorter side counts as that.
QPainterPath roundedRectanglePath(const QRectF &rect, qreal radius);
// The shorter sides are half circles.
QPainterPath capsulePath(const QRectF &rect);

// Opaque black or white, whichever can be told better from the colour, as if that were opaque.
// Brightness is the eye's: a pure blue is dark, a pure green is light.
QColor contrastingBlackOrWhite(const QColor &color);

// Colours as preferences are texts: "#rrggbbaa". Without the last two digits the colour is opaque;
// any other text gives an invalid colour.
QColor colorFromText(const QString &text);
QString colorText(const QColor &color);
