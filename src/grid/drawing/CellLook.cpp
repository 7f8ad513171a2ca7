#include "grid/drawing/CellLook.h"

#include "catalogue/OTAppManager.h"

namespace {

// What is under way over the view comes before what is done with the mouse button.
bool isDimmedByPointer(const CellFacts &facts)
{
    if (facts.isFileDrop) {
        return !facts.isDroppable;
    }
    if (facts.isIconMove) {
        return facts.isDragged;
    }
    return facts.isSelected && facts.isMouseButtonDown;
}

bool isDimmedInGroup(const CellFacts &facts)
{
    switch (facts.group) {
    case IncludedGroup:
    case Included1DGroup:
    case AllGroup:
    case All1DGroup:
        return facts.isExcluded;
    case ExcludedGroup:
    case Excluded1DGroup:
        return !facts.isExcluded;
    default:
        return false;
    }
}

bool isOpaque(const CellFacts &facts)
{
    if (!facts.hasApp) {
        return true;
    }
    if (facts.isFilteredOut || isDimmedByPointer(facts) || isDimmedInGroup(facts)) {
        return false;
    }
    return !facts.isFunctionKeyHeld || facts.group == RunningGroup || facts.isRunning;
}

bool isHighlighted(const CellFacts &facts)
{
    if (!facts.hasApp) {
        return false;
    }
    const bool showsRunning = facts.group != RunningGroup && !facts.isFunctionKeyHeld;
    return (showsRunning && facts.isRunning)
        || (facts.isFileDrop && facts.isSelected && facts.isDroppable);
}

bool isDecorated(const CellFacts &facts)
{
    const bool isFavourites = facts.group == UserGroup || facts.group == User1DGroup;
    return facts.isIconMove && isFavourites && facts.isSelected
        && (!facts.hasApp || !facts.isDragged);
}

} // namespace

CellLook cellLook(const CellFacts &facts)
{
    CellLook look;
    look.isOpaque = isOpaque(facts);
    look.isHighlighted = isHighlighted(facts);
    look.isDecorated = isDecorated(facts);
    if (facts.hasApp) {
        look.isMarked = facts.isNew;
        look.hasStartMark = facts.hasStartMark;
        look.strength = facts.strength;
    }
    return look;
}
