// How a cell looks, from what is known about it.

#pragma once

struct CellFacts
{
    // The group that is shown; -1 for none.
    int group = -1;

    // Of the application in the cell; without one the others mean nothing.
    bool hasApp = false;
    bool isFilteredOut = false;
    bool isExcluded = false;
    bool isRunning = false;
    // It is new, and new ones are to be marked.
    bool isNew = false;
    // It is being started: the strength of its pulse, or a mark where nothing moves.
    float strength = 1;
    bool hasStartMark = false;
    // It is the application of the icon move.
    bool isDragged = false;
    // The files over the view can be dropped on it.
    bool isDroppable = false;

    bool isSelected = false;

    // Of the view.
    bool isFileDrop = false;
    bool isIconMove = false;
    // The left or the right one.
    bool isMouseButtonDown = false;
    bool isFunctionKeyHeld = false;
};

struct CellLook
{
    // Otherwise everything in the cell is drawn dimmed.
    bool isOpaque = true;
    // There is something behind the icon.
    bool isHighlighted = false;
    // A triangle shows that a dragged icon would go before this cell.
    bool isDecorated = false;
    // A dot in a corner of the icon says that the application is new.
    bool isMarked = false;
    // Dots on the icon say that the application is being started.
    bool hasStartMark = false;
    // The opacity of the icon beside all others.
    float strength = 1;

    friend bool operator==(const CellLook &, const CellLook &) = default;
};

CellLook cellLook(const CellFacts &facts);
