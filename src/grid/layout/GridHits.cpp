// The part of the layout that tells what lies at a point.

#include "grid/layout/GridLayout.h"
#include "support/Geometry.h"

#include <algorithm>
#include <cmath>

namespace {

quint64 firstHolding(const std::vector<QRectF> &rects, const QPointF &point)
{
    const auto found = std::find_if(rects.begin(), rects.end(),
        [&point](const QRectF &rect) { return Geometry::mouseInRect(point, rect); });
    return found == rects.end() ? Coords::NotFound : quint64(found - rects.begin());
}

// Where on one axis a line of cells lies.
struct Extent
{
    double origin = 0;
    double length = 0;
};

enum class Direction { Growing, Falling };

// Binary search among lines whose origins grow or fall with their number. A line holds origin to
// origin + length − 1; lines without length are passed over.
template <typename ExtentOf>
quint64 lineHolding(double value, quint64 count, Direction direction, ExtentOf extentOf)
{
    quint64 low = 0;
    quint64 high = count;
    while (low < high) {
        quint64 middle = low + (high - low) / 2;
        Extent extent = extentOf(middle);
        const quint64 firstTried = middle;
        while (extent.length <= 0 && ++middle < high) {
            extent = extentOf(middle);
        }
        if (extent.length <= 0) {
            high = firstTried;
        } else if (value >= extent.origin && value <= extent.origin + extent.length - 1) {
            return middle;
        } else if ((value < extent.origin) == (direction == Direction::Falling)) {
            low = middle + 1;
        } else {
            high = firstTried;
        }
    }
    return Coords::NotFound;
}

} // namespace

QRectF GridLayout::rectOfCellForRow(quint64 row, quint64 column) const
{
    return isValidRow(row, column) ? cellAt(row, column).rect : QRectF(0, 0, 0, 0);
}

QRectF GridLayout::rectOfCoords(const Coords &coords) const
{
    return rectOfCellForRow(coords.row, coords.col);
}

Coords GridLayout::coordsOfPoint(const QPointF &point) const
{
    Coords coords;
    if (_bunchCount == 0 || !Geometry::mouseInRect(point, { QPointF(0, 0), viewSize() })) {
        return coords;
    }
    coords.bunch = firstHolding(_bunchRects, point);
    if (coords.bunch == Coords::NotFound) {
        coords.spacer = firstHolding(_bunchSpacingRects, point);
    }
    if (coords.bunch == Coords::NotFound || !findCell(point, coords.bunch, coords)) {
        coords.margin = firstHolding(_marginRects, point);
    }
    return coords;
}

// Cells of a band stand at equal distances, so the one that can hold the point is computed. Its
// neighbours are looked at too, because a point may be a rounding away from an edge.
bool GridLayout::findCell(const QPointF &point, quint64 band, Coords &coords) const
{
    const Band &lines = _bands[band];
    if (lines.lineCount == 0 || _lookupTable.empty()) {
        return false;
    }
    const quint64 firstRow = isStacked() ? lines.firstLine : 0;
    const quint64 firstColumn = isStacked() ? 0 : lines.firstLine;
    const quint64 endRow = isStacked() ? firstRow + lines.lineCount : _rowCount;
    const quint64 endColumn = isStacked() ? _colCount : firstColumn + lines.lineCount;

    const QRectF first = cellAt(firstRow, firstColumn).rect;
    const auto pitch = double(_cellWidth + _cellSpacing);
    const double rowsDown = std::floor((first.y() + first.height() - point.y()) / pitch);
    const double columnsAlong = std::floor((point.x() - first.x()) / pitch);
    for (double down = rowsDown - 1; down <= rowsDown + 1; ++down) {
        for (double along = columnsAlong - 1; along <= columnsAlong + 1; ++along) {
            const double row = double(firstRow) + down;
            const double column = double(firstColumn) + along;
            if (row >= double(firstRow) && row < double(endRow) && column >= double(firstColumn)
                && column < double(endColumn)
                && Geometry::mouseInRect(point, cellAt(quint64(row), quint64(column)).rect)) {
                coords.row = quint64(row);
                coords.col = quint64(column);
                return true;
            }
        }
    }
    return false;
}

Coords GridLayout::coordsOfPoint2(const QPointF &point) const
{
    Coords coords;
    if (!Geometry::mouseInRect(point, { QPointF(0, 0), viewSize() })) {
        return coords;
    }
    const auto rowIn = [&](quint64 column) {
        return lineHolding(point.y(), _rowCount, Direction::Falling, [&](quint64 row) {
            const QRectF rect = rectOfCellForRow(row, column);
            return Extent { rect.y(), rect.height() };
        });
    };
    const auto columnIn = [&](quint64 row) {
        return lineHolding(point.x(), _colCount, Direction::Growing, [&](quint64 column) {
            const QRectF rect = rectOfCellForRow(row, column);
            return Extent { rect.x(), rect.width() };
        });
    };
    const quint64 row = isStacked() ? rowIn(0) : Coords::NotFound;
    const quint64 column = isStacked() ? Coords::NotFound : columnIn(0);
    const quint64 line = isStacked() ? row : column;
    if (line == Coords::NotFound) {
        return coords;
    }
    const quint64 place = isStacked() ? columnIn(line) : rowIn(line);
    if (place != Coords::NotFound) {
        coords.row = isStacked() ? line : place;
        coords.col = isStacked() ? place : line;
    }
    return coords;
}

QRectF GridLayout::bandEnd(const Coords &coords) const
{
    const bool isNamed = coords.bunch < _bunchRects.size() && coords.margin < _marginRects.size();
    return isNamed ? _bunchRects[coords.bunch] & _marginRects[coords.margin] : QRectF();
}

std::vector<QRectF> GridLayout::marksThatDiffer(const Coords &one, const Coords &other) const
{
    std::vector<QRectF> marks;
    const auto add = [&marks](const QRectF &mark) {
        if (!mark.isEmpty()) {
            marks.push_back(mark);
        }
    };
    for (const Coords &coords : { one, other }) {
        if (one.spacer != other.spacer && coords.spacer < _bunchSpacingRects.size()) {
            add(_bunchSpacingRects[coords.spacer]);
        }
        if (one.bunch != other.bunch || one.margin != other.margin) {
            add(bandEnd(coords));
        }
    }
    return marks;
}
