// The pointer that says: a click makes this icon disappear.

#pragma once

#include <QCursor>

// An arrow with a puff beside it, drawn for screens of this many pixels a point. Its tip is what
// points.
QCursor disappearingItemCursor(qreal devicePixelRatio);

// At the ratio of the finest screen: a cursor knows only one.
QCursor disappearingItemCursor();
