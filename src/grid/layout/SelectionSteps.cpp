#include "grid/layout/SelectionSteps.h"

#include "grid/layout/GridLayout.h"

#include <QtCore/qnamespace.h>

namespace {

using SelectionSteps::Step;

// The cells as one line, by rows or by columns.
class CellLine final
{
public:
    CellLine(const GridLayout &layout, bool isByRows)
        : _lineLength(qint64(isByRows ? layout.columnCount() : layout.rowCount()))
        , _count(qint64(layout.columnCount() * layout.rowCount()))
        , _isByRows(isByRows)
    { }

    qint64 count() const { return _count; }
    qint64 placeOf(const Coords &coords) const
    {
        return _isByRows ? qint64(coords.row) * _lineLength + qint64(coords.col)
                         : qint64(coords.col) * _lineLength + qint64(coords.row);
    }
    Coords cellAt(qint64 place) const
    {
        const auto line = quint64(place / _lineLength);
        const auto inLine = quint64(place % _lineLength);
        return _isByRows ? Coords { line, inLine } : Coords { inLine, line };
    }
    // The ends of the line in which a place lies.
    qint64 startAround(qint64 place) const { return place / _lineLength * _lineLength; }
    qint64 endAround(qint64 place) const { return startAround(place) + _lineLength - 1; }

private:
    qint64 _lineLength;
    qint64 _count;
    bool _isByRows;
};

} // namespace

std::optional<Step> SelectionSteps::stepOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return Step::Left;
    case Qt::Key_Right:
        return Step::Right;
    case Qt::Key_Up:
        return Step::Up;
    case Qt::Key_Down:
        return Step::Down;
    case Qt::Key_Home:
        return Step::First;
    case Qt::Key_End:
        return Step::Last;
    case Qt::Key_PageUp:
        return Step::PageUp;
    case Qt::Key_PageDown:
        return Step::PageDown;
    default:
        return std::nullopt;
    }
}

Coords SelectionSteps::moved(
    const Coords &from, Step step, const GridLayout &layout, const IsLit &isLit)
{
    const bool isFirstStep = !layout.isValidRow(from.row, from.col) || !isLit(from.row, from.col);
    const bool isAcross =
        step == Step::Left || step == Step::Right || step == Step::First || step == Step::Last;
    const CellLine line(layout, isAcross || isFirstStep);
    const bool isBackwards = !isFirstStep
        && (step == Step::Left || step == Step::Up || step == Step::Last || step == Step::PageDown);
    qint64 place = isFirstStep ? 0 : line.placeOf(from);
    if (!isFirstStep) {
        const bool isToStart = step == Step::First || step == Step::PageUp;
        const bool isToEnd = step == Step::Last || step == Step::PageDown;
        place = isToStart ? line.startAround(place)
            : isToEnd     ? line.endAround(place)
                          : place + (isBackwards ? -1 : 1);
    }
    for (; place >= 0 && place < line.count(); place += isBackwards ? -1 : 1) {
        const Coords cell = line.cellAt(place);
        if (isLit(cell.row, cell.col)) {
            return cell;
        }
    }
    return isFirstStep ? Coords() : from;
}
