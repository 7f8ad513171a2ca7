// What a layout is made from, and what it makes of each cell.

#pragma once

#include <QRectF>

#include <vector>

// The preferences of the layout, as they are stored; limits are applied when they are used.
struct GridSettings
{
    // 0: bunches are ignored, 1: bands are stacked, 2: bands stand side by side.
    qint64 groupOrientation = 2;
    // 1: icons run across first, 2: down first.
    qint64 iconReadingOrder = 1;
    bool minimizeEmptyCells = false;
    qint64 maximumIconSize = 64;
    qint64 iconPadding = 2;
    qint64 iconSpacing = 0;
};

// What is shown.
struct GridContents
{
    bool isFlat = true;
    // Running applications, when flat, are laid out as a strip.
    bool isRunningGroup = false;
    // How many applications each bunch holds; a flat list is one bunch. Bunches past the 256th are
    // not shown.
    std::vector<quint64> bunchSizes;
};

struct GridCell
{
    // False for a cell that no application fills.
    bool hasApp = false;
    quint64 bunch = 0;
    // Of the application in its bunch; of the one that would stand there in an empty cell.
    quint64 index = 0;
    QRectF rect;

    friend bool operator==(const GridCell &, const GridCell &) = default;
};
