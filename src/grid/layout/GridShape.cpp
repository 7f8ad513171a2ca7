#include "grid/layout/GridShape.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

quint64 ceilingOfSingle(quint64 count, quint64 rows)
{
    return quint64(std::ceil(float(count) / float(rows)));
}

// What one candidate of the bunched search comes to.
struct Candidate
{
    quint64 rows = 0;
    quint64 columns = 0;
    double difference = 0;
    quint64 emptyCells = 0;
};

Candidate candidateFor(const GridShapes::BunchedSearch &search, quint64 rowsAllowed, quint64 total)
{
    Candidate candidate;
    for (const quint64 size : search.bunchSizes) {
        // An empty bunch still takes a cell.
        const quint64 filled = std::max<quint64>(size, 1);
        const quint64 columns = GridShapes::linesFor(filled, rowsAllowed);
        candidate.columns += columns;
        candidate.rows = std::max(candidate.rows, GridShapes::linesFor(filled, columns));
    }
    const qint64 bands = qint64(search.bunchSizes.size());
    const qint64 columns = qint64(candidate.columns);
    const qint64 rows = qint64(candidate.rows);
    const qint64 along = (bands - 1) * (search.cellEdge / 2) + columns * search.cellEdge
        + (columns - bands) * search.cellSpacing;
    const qint64 across = (rows - 1) * search.cellSpacing + rows * search.cellEdge;
    const float ratio =
        search.isStacked ? float(across) / float(along) : float(along) / float(across);
    candidate.difference = std::fabs(double(ratio) - search.aspect);
    candidate.emptyCells = candidate.columns * candidate.rows - total;
    return candidate;
}

} // namespace

quint64 GridShapes::linesFor(quint64 count, quint64 perLine)
{
    return perLine == 0 ? 0 : (count + perLine - 1) / perLine;
}

GridShape GridShapes::strip(quint64 count, qint64 cellEdge, double availableWidth)
{
    if (count == 0) {
        return {};
    }
    // With an area that holds nothing the search would never end; one column is as narrow as it
    // gets.
    const double wholeWidth = std::trunc(availableWidth);
    const double edge = wholeWidth < double(cellEdge) ? wholeWidth : double(cellEdge);
    quint64 rows = 1;
    while (rows < count && !(double(ceilingOfSingle(count, rows)) * edge <= availableWidth)) {
        ++rows;
    }
    return { rows, ceilingOfSingle(count, rows) };
}

GridShape GridShapes::flat(quint64 count, double aspect)
{
    if (count == 0) {
        return {};
    }
    // No ratio falls to an aspect of zero or less; and past the limit every shape is clamped to the
    // same one.
    const quint64 mostRows = aspect <= 0 ? count : std::max(count, GridShape::MostLines);
    GridShape shape { 1, count };
    float ratio = float(count);
    GridShape previous;
    float previousRatio = 0;
    while (double(ratio) > aspect && shape.rows < mostRows) {
        previous = shape;
        previousRatio = ratio;
        ++shape.rows;
        shape.columns = ceilingOfSingle(count, shape.rows);
        ratio = float(shape.columns) / float(shape.rows);
    }
    const bool isPreviousCloser = previousRatio > 0
        && std::fabs(double(ratio) - aspect) > std::fabs(double(previousRatio) - aspect);
    return isPreviousCloser ? previous : shape;
}

GridShape GridShapes::bunched(const BunchedSearch &search)
{
    quint64 total = 0;
    quint64 longest = 0;
    for (const quint64 size : search.bunchSizes) {
        total += size;
        longest = std::max(longest, size);
    }
    GridShape shape { longest, quint64(search.bunchSizes.size()) };
    double best = std::numeric_limits<double>::max();
    quint64 fewestEmpty = std::numeric_limits<quint64>::max();
    for (quint64 rowsAllowed = longest; rowsAllowed > 1; rowsAllowed = shape.rows - 1) {
        const Candidate candidate = candidateFor(search, rowsAllowed, total);
        const bool hasFewerEmpty = search.minimizesEmptyCells && candidate.emptyCells < fewestEmpty;
        if (!(candidate.difference < best) && !hasFewerEmpty) {
            break;
        }
        shape = { candidate.rows, candidate.columns };
        best = candidate.difference;
        fewestEmpty = candidate.emptyCells;
    }
    return search.isStacked ? shape.turned() : shape;
}
