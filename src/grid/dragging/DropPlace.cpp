#include "grid/dragging/DropPlace.h"

#include "grid/layout/GridLayout.h"

using SelectionSteps::Step;

namespace {

constexpr quint64 TopMargin = 0;

} // namespace

std::optional<DropPlace> DropPlace::ofDrop(const Coords &coords, const GridLayout &layout)
{
    if (layout.isValidRow(coords.row, coords.col)) {
        const GridCell &cell = layout.cellAt(coords.row, coords.col);
        return DropPlace { false, qsizetype(cell.bunch), qsizetype(cell.index) };
    }
    if (coords.bunch != Coords::NotFound) {
        return DropPlace { false, qsizetype(coords.bunch),
            coords.margin == TopMargin ? 0 : AtTheEnd };
    }
    if (coords.spacer != Coords::NotFound) {
        return DropPlace { true, qsizetype(coords.spacer), 0 };
    }
    return std::nullopt;
}

std::optional<DropPlace> DropPlace::farther(const Coords &cell, Step step, const GridLayout &layout)
{
    const bool isForward = step == Step::Right || step == Step::Down;
    const bool isSideways = step == Step::Left || step == Step::Right;
    if (!isForward && step != Step::Left && step != Step::Up) {
        return std::nullopt;
    }
    const GridCell &own = layout.cellAt(cell.row, cell.col);
    const quint64 ownSize = layout.bunchSize(own.bunch);
    // Before the first line of the grid the number wraps, and is not valid either.
    const quint64 by = isForward ? 1 : ~Q_UINT64_C(0);
    const Coords next { cell.row + (isSideways ? 0 : by), cell.col + (isSideways ? by : 0) };
    if (layout.rectOfCoords(next).isEmpty()) {
        const bool isAlone = ownSize == 1;
        const bool isOuterEdge = layout.hasBands() && isSideways != layout.isStacked();
        const bool isThere = isAlone && own.bunch == (isForward ? layout.bunchCount() - 1 : 0);
        if (!isOuterEdge || isThere) {
            return std::nullopt;
        }
        return DropPlace { true, isForward ? qsizetype(layout.bunchCount()) : 0, 0 };
    }
    const GridCell &target = layout.cellAt(next.row, next.col);
    if (target.bunch != own.bunch) {
        return DropPlace { false, qsizetype(target.bunch), qsizetype(target.index) };
    }
    if (target.index > own.index && own.index + 1 == ownSize) {
        return std::nullopt;
    }
    // What stands before an application counts without it.
    return DropPlace { false, qsizetype(own.bunch),
        qsizetype(target.index > own.index ? target.index + 1 : target.index) };
}
