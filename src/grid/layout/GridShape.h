// How many rows and columns a group takes: the searches for the shape that fits the screen best.
//
// Pure arithmetic. Where a figure is single-precision that is on purpose: near ties are decided by
// it.

#pragma once

#include <QtGlobal>

#include <vector>

struct GridShape
{
    // No grid has more rows or columns.
    static constexpr quint64 MostLines = 256;

    quint64 rows = 0;
    quint64 columns = 0;

    GridShape clamped() const { return { qMin(rows, MostLines), qMin(columns, MostLines) }; }
    GridShape turned() const { return { columns, rows }; }
};

namespace GridShapes {

// A strip: as few rows as the width allows for cells of this edge, or for cells as wide as the
// whole width where that is less.
GridShape strip(quint64 count, qint64 cellEdge, double availableWidth);

// The first shape, from one row on, that is not wider in proportion than the area; or the one
// before, where that came closer.
GridShape flat(quint64 count, double aspect);

struct BunchedSearch
{
    const std::vector<quint64> &bunchSizes;
    qint64 cellEdge = 0;
    qint64 cellSpacing = 0;
    // Bands lie above each other rather than side by side.
    bool isStacked = false;
    // Take a shape with fewer empty cells even where its proportions are worse.
    bool minimizesEmptyCells = false;
    double aspect = 1;
};

// Starts with every bunch a single column and makes the bands broader as long as that brings the
// shape closer to the area. With bunches that are all empty one of the counts is 0.
GridShape bunched(const BunchedSearch &search);

// Lines that `count` applications take, `perLine` in each; none where a line holds nothing.
quint64 linesFor(quint64 count, quint64 perLine);

} // namespace GridShapes
