#include "grid/layout/GridLayout.h"

#include "grid/layout/GridShape.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Margin = double(GridLayout::OuterMargin);
constexpr double BothMargins = 2 * Margin;
// Every whole number up to here is a double; a cell is never near it.
constexpr double LargestExactWidth = 9007199254740992.0;

bool hasExtent(const QSizeF &size)
{
    return size.width() > 0 && size.height() > 0;
}

} // namespace

// A choice that is not offered counts as the default; a number is brought into its range.
void GridLayout::takeSettings()
{
    const qint64 orientation = _settings.groupOrientation;
    _groupOrientation = orientation == 0 || orientation == 1 ? orientation : 2;
    _iconReadingOrder = _settings.iconReadingOrder == 2 ? 2 : 1;
    _maxIconWidth = std::clamp<qint64>(_settings.maximumIconSize, 0, LargestIconWidth);
    _cellPadding = std::clamp<qint64>(_settings.iconPadding, 2, 8);
    _cellSpacing = std::clamp<qint64>(_settings.iconSpacing, 0, 8);
}

void GridLayout::takeContents()
{
    _isFlat = _contents.isFlat;
    _bunchSizes = _contents.bunchSizes;
    if (_isFlat && !_bunchSizes.empty()) {
        _bunchSizes.resize(_bunchSizes[0] == 0 ? 0 : 1);
    }
    // Every bunch takes a line, so a later one could have no cell anyway.
    _bunchSizes.resize(std::min<size_t>(_bunchSizes.size(), GridShape::MostLines));
    _bunchCount = _bunchSizes.size();
}

void GridLayout::calcRowColCount()
{
    takeSettings();
    takeContents();
    _isForced = false;
    const GridShape shape = bestShape().clamped();
    _rowCount = shape.rows;
    _colCount = shape.columns;
    buildAll();
}

GridShape GridLayout::bestShape() const
{
    if (_bunchCount == 0) {
        return {};
    }
    const qint64 cellEdge = _maxIconWidth + 2 * _cellPadding;
    const double width = _maxIconViewSize.width() - BothMargins;
    const double aspect = width / (_maxIconViewSize.height() - BothMargins);
    if (!_isFlat) {
        return GridShapes::bunched({ _bunchSizes, cellEdge, _cellSpacing, isStacked(),
            _settings.minimizeEmptyCells, aspect });
    }
    return _contents.isRunningGroup ? GridShapes::strip(_bunchSizes[0], cellEdge, width)
                                    : GridShapes::flat(_bunchSizes[0], aspect);
}

void GridLayout::forceRowColCountForRows(quint64 rows, quint64 orCols)
{
    const quint64 perLine = std::min(rows != 0 ? rows : orCols, GridShape::MostLines);
    if (perLine == 0) {
        return;
    }
    takeSettings();
    takeContents();
    _isForced = true;
    quint64 lines = 0;
    for (const quint64 size : _bunchSizes) {
        lines += GridShapes::linesFor(size, perLine);
    }
    lines = std::min(lines, GridShape::MostLines);
    _rowCount = rows != 0 ? perLine : lines;
    _colCount = rows != 0 ? lines : perLine;
    buildAll();
}

bool GridLayout::hasSamePlaces(const GridLayout &other) const
{
    return _rowCount == other._rowCount && _colCount == other._colCount
        && _lookupTable == other._lookupTable && _bunchRects == other._bunchRects
        && _bunchSpacingRects == other._bunchSpacingRects && _marginRects == other._marginRects;
}

void GridLayout::buildAll()
{
    calcIconWidth();
    buildLookupTable();
    buildBunchRects();
    buildMarginRects();
}

void GridLayout::setIconWidth(qint64 width)
{
    _iconWidth = width;
    _cellWidth = _cellHeight = width + 2 * _cellPadding;
}

void GridLayout::calcIconWidth()
{
    if (!hasExtent(_maxIconViewSize) || _bunchCount == 0) {
        return;
    }
    const auto fits = [this] {
        const QSizeF size = viewSize();
        return size.width() <= _maxIconViewSize.width()
            && size.height() <= _maxIconViewSize.height();
    };
    setIconWidth(_maxIconWidth);
    while (_iconWidth > 1 && !fits()) {
        setIconWidth(_iconWidth - 1);
    }
}

QSizeF GridLayout::viewSize() const
{
    return viewSizeForCellSize(
        QSizeF(double(_cellWidth), double(_cellHeight)), qint64(_rowCount), qint64(_colCount));
}

QSizeF GridLayout::viewSizeForCellSize(const QSizeF &cell, qint64 withRows, qint64 columns) const
{
    if (withRows <= 0 || columns <= 0 || !hasExtent(cell)) {
        return _frameSize;
    }
    const auto spacing = double(_cellSpacing);
    const auto bands = double(_bunchCount);
    const auto rows = double(withRows);
    const auto cols = double(columns);
    const double wholeWidth = std::min(std::round(cell.width()), LargestExactWidth);
    const double gaps = (bands - 1) * double(bunchSpacingForCellWidth(quint64(wholeWidth)));
    double width = cols * cell.width() + BothMargins + (cols - 1) * spacing;
    double height = rows * cell.height() + BothMargins + (rows - 1) * spacing;
    // Between two bands there is a gap instead of the spacing.
    if (_groupOrientation == 2) {
        width += (1 - bands) * spacing + gaps;
    } else if (isStacked()) {
        height += (1 - bands) * spacing + gaps;
    }
    return { width, height };
}

// Which lines each band takes. A band never takes a line that the grid does not have.
void GridLayout::buildBands()
{
    const quint64 perLine = isStacked() ? _colCount : _rowCount;
    const quint64 lineCount = isStacked() ? _rowCount : _colCount;
    _bands.assign(_bunchCount, {});
    quint64 line = 0;
    for (quint64 i = 0; i < _bunchCount; ++i) {
        quint64 lines = GridShapes::linesFor(_bunchSizes[i], perLine);
        if (lines == 0 && !_isForced) {
            lines = 1;
        }
        if (_isFlat) {
            lines = lineCount;
        }
        _bands[i] = { line, std::min(lines, lineCount - line) };
        line += _bands[i].lineCount;
    }
}

void GridLayout::buildLookupTable()
{
    buildBands();
    _lookupTable.assign(_rowCount * _colCount, {});
    for (quint64 band = 0; band < _bands.size(); ++band) {
        const quint64 end = _bands[band].firstLine + _bands[band].lineCount;
        for (quint64 line = _bands[band].firstLine; line < end; ++line) {
            const quint64 across = isStacked() ? _colCount : _rowCount;
            for (quint64 i = 0; i < across; ++i) {
                const quint64 row = isStacked() ? line : i;
                const quint64 column = isStacked() ? i : line;
                _lookupTable[row * _colCount + column] = filledCell(row, column, band);
            }
        }
    }
}

GridCell GridLayout::filledCell(quint64 row, quint64 column, quint64 band) const
{
    // The band as a grid of its own.
    const Band &lines = _bands[band];
    const quint64 rows = isStacked() ? lines.lineCount : _rowCount;
    const quint64 columns = isStacked() ? _colCount : lines.lineCount;
    const quint64 rowInBand = isStacked() ? row - lines.firstLine : row;
    const quint64 columnInBand = isStacked() ? column : column - lines.firstLine;

    GridCell cell;
    cell.bunch = band;
    cell.index = _iconReadingOrder == 2 ? columnInBand * rows + rowInBand
                                        : rowInBand * columns + columnInBand;
    cell.hasApp = cell.index < _bunchSizes[band];
    cell.rect = cellRect(row, column, band);
    return cell;
}

QRectF GridLayout::cellRect(quint64 row, quint64 column, quint64 band) const
{
    const auto width = double(_cellWidth);
    const auto height = double(_cellHeight);
    const auto spacing = double(_cellSpacing);
    const auto col = double(column);
    const double rowFromBelow = double(_rowCount) - 1 - double(row);
    double x = Margin + col * (width + spacing);
    double y = Margin + rowFromBelow * (height + spacing);
    if (_groupOrientation == 2) {
        x += double(band) * (gap() - spacing);
    } else if (isStacked()) {
        y += (double(_bunchCount) - 1 - double(band)) * (gap() - spacing);
    }
    return { x, y, width, height };
}

void GridLayout::buildBunchRects()
{
    _bunchRects.assign(_bunchCount, {});
    _bunchSpacingRects.assign(_bunchCount > 0 ? _bunchCount + 1 : 0, {});
    if (_bunchCount == 0 || (!_isFlat && _groupOrientation == 0)) {
        return;
    }
    const QSizeF size = viewSize();
    if (_isFlat) {
        _bunchRects[0] = { QPointF(0, 0), size };
        return;
    }
    const auto cell = double(_cellWidth);
    const auto spacing = double(_cellSpacing);
    const double end = isStacked() ? size.height() : size.width();
    // Bands are measured from the side where they begin: the left, or the top.
    const auto across = [&](double from, double extent) {
        return isStacked() ? QRectF(0, end - from - extent, size.width(), extent)
                           : QRectF(from, 0, extent, size.height());
    };
    _bunchSpacingRects[0] = across(0, Margin);
    double from = Margin;
    for (quint64 i = 0; i < _bunchCount; ++i) {
        if (i > 0) {
            _bunchSpacingRects[i] = across(from, gap());
            from += gap();
        }
        const auto lines = double(_bands[i].lineCount);
        const double extent = lines * cell + (lines - 1) * spacing;
        _bunchRects[i] = across(from, extent);
        from += extent;
    }
    // Stacked bands end at the bottom even when the view is not as high as they are.
    _bunchSpacingRects[_bunchCount] = across(isStacked() ? end - Margin : from, Margin);
}

void GridLayout::buildMarginRects()
{
    const QSizeF size = viewSize();
    _marginRects = { QRectF(0, size.height() - Margin, size.width(), Margin),
        QRectF(size.width() - Margin, 0, Margin, size.height()), QRectF(0, 0, size.width(), Margin),
        QRectF(0, 0, Margin, size.height()) };
}
