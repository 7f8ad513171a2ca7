// The layout of the grid: counts in, rectangles and hits out.
//
// A group is a list, or bunches of which each fills a band of its own. Row 0 is the top row;
// figures are points, y grows upwards from the lower edge of the view. The derived tables are
// rebuilt together by calcRowColCount() and forceRowColCountForRows(); settings, contents and the
// largest size that are set in between do not show until then. Nothing fails: what does not exist
// gives an empty rectangle or empty Coords.

#pragma once

#include "grid/layout/Coords.h"
#include "grid/layout/GridValues.h"

#include <QRectF>
#include <QSizeF>

#include <vector>

struct GridShape;

class GridLayout final
{
public:
    // Width of the margin on each side of the grid.
    static constexpr qint64 OuterMargin = 12;
    static constexpr qint64 LargestIconWidth = 128;

    const GridSettings &settings() const { return _settings; }
    void setSettings(const GridSettings &settings) { _settings = settings; }
    void setContents(const GridContents &contents) { _contents = contents; }
    // The largest grid that can be shown; without a positive extent icons keep the size they have.
    void setMaxIconViewSize(const QSizeF &size) { _maxIconViewSize = size; }
    // The size that the view has now; it answers viewSize() while there is no grid.
    void setFrameSize(const QSizeF &size) { _frameSize = size; }

    // Finds the shape and the icon size that fit best; neither count exceeds 256.
    void calcRowColCount();
    // Takes this many rows, or columns where rows is 0, and as many of the other as the contents
    // need. Here an empty bunch takes no room, whereas calcRowColCount() leaves it a line of empty
    // cells. Nothing changes when both are 0.
    void forceRowColCountForRows(quint64 rows, quint64 orCols);

    quint64 rowCount() const { return _rowCount; }
    quint64 columnCount() const { return _colCount; }
    quint64 bunchCount() const { return _bunchCount; }
    // Of a bunch that is shown: how many applications it holds.
    quint64 bunchSize(quint64 bunch) const { return _bunchSizes[bunch]; }
    // Whether bunches have bands, and whether these lie one below the other.
    bool hasBands() const { return !_isFlat; }
    bool isStacked() const { return _groupOrientation == 1; }
    quint64 iconWidth() const { return quint64(_iconWidth); }
    quint64 cellWidth() const { return quint64(_cellWidth); }
    // A band for each bunch; the gaps with the outer margins before and after; top, right, bottom,
    // left. Bands and gaps run through the outer margins.
    const std::vector<QRectF> &bunchRects() const { return _bunchRects; }
    const std::vector<QRectF> &bunchSpacingRects() const { return _bunchSpacingRects; }
    const std::vector<QRectF> &marginRects() const { return _marginRects; }
    // The part of a band that lies in a margin, where coords name both; otherwise empty.
    QRectF bandEnd(const Coords &coords) const;
    // The gaps, outer margins and ends of bands that only one of the two names: what has to be
    // drawn anew where these are marked.
    std::vector<QRectF> marksThatDiffer(const Coords &one, const Coords &other) const;

    bool isValidRow(quint64 row, quint64 column) const
    {
        return row < _rowCount && column < _colCount;
    }
    // The cell must be valid.
    const GridCell &cellAt(quint64 row, quint64 column) const
    {
        return _lookupTable[row * _colCount + column];
    }
    static quint64 bunchSpacingForCellWidth(quint64 width) { return width / 2; }
    quint64 cellPaddingForIconWidth(quint64) const { return quint64(_cellPadding); }

    // Whether cells, bands, gaps and margins lie where they lie in the other one. Neither the
    // applications nor what is set but not yet laid out count.
    bool hasSamePlaces(const GridLayout &other) const;

    QSizeF viewSize() const;
    QSizeF viewSizeForCellSize(const QSizeF &cell, qint64 withRows, qint64 columns) const;

    // What lies at a point of the grid; empty outside viewSize(). A point may lie in a band and in
    // a margin at once, since bands run through the margins.
    Coords coordsOfPoint(const QPointF &point) const;
    // The same by binary search, for grids without bands: it answers row and column only.
    Coords coordsOfPoint2(const QPointF &point) const;
    QRectF rectOfCoords(const Coords &coords) const;
    QRectF rectOfCellForRow(quint64 row, quint64 column) const;

private:
    // The lines of a band: columns where bands stand side by side, rows where they are stacked.
    struct Band
    {
        quint64 firstLine = 0;
        quint64 lineCount = 0;
    };

    double gap() const { return double(bunchSpacingForCellWidth(quint64(_cellWidth))); }
    QRectF cellRect(quint64 row, quint64 column, quint64 band) const;

    void takeSettings();
    void takeContents();
    void setIconWidth(qint64 width);
    void calcIconWidth();
    GridShape bestShape() const;
    void buildAll();
    void buildBands();
    void buildLookupTable();
    GridCell filledCell(quint64 row, quint64 column, quint64 band) const;
    void buildBunchRects();
    void buildMarginRects();
    bool findCell(const QPointF &point, quint64 band, Coords &coords) const;

    // As they were set; the layout reads what takeSettings() and takeContents() make of them.
    GridSettings _settings;
    GridContents _contents;
    QSizeF _maxIconViewSize { 0, 0 };
    QSizeF _frameSize { 0, 0 };
    quint64 _rowCount = 0;
    quint64 _colCount = 0;
    quint64 _bunchCount = 0;
    std::vector<quint64> _bunchSizes;
    bool _isFlat = true;
    bool _isForced = false;
    qint64 _groupOrientation = 2;
    qint64 _iconReadingOrder = 1;
    qint64 _maxIconWidth = 64;
    qint64 _iconWidth = 128;
    qint64 _cellPadding = 2;
    qint64 _cellWidth = 132;
    qint64 _cellHeight = 132;
    qint64 _cellSpacing = 0;
    std::vector<Band> _bands;
    std::vector<GridCell> _lookupTable;
    std::vector<QRectF> _bunchRects;
    std::vector<QRectF> _bunchSpacingRects;
    std::vector<QRectF> _marginRects;
};
