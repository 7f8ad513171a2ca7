#include "grid/GridLayout.h"
#include "grid/LayoutSamples.h"
#include "support/Geometry.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>

class GridHitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void pointsAreTold_data();
    void pointsAreTold();
    void computedHits_equalThoseOfAScan();
    void binarySearch_findsCells_data();
    void binarySearch_findsCells();
    void rectOfCoords_isEmptyOutside();
};

namespace {

quint64 scan(const std::vector<QRectF> &rects, const QPointF &point)
{
    for (quint64 i = 0; i < rects.size(); ++i) {
        if (Geometry::mouseInRect(point, rects[i])) {
            return i;
        }
    }
    return Coords::NotFound;
}

// Looks at every cell of the band in turn, whatever the layout knows about distances.
Coords scannedCoordsOfPoint(const GridLayout &layout, const QPointF &point)
{
    Coords coords;
    if (layout.bunchCount() == 0
        || !Geometry::mouseInRect(point, QRectF(QPointF(0, 0), layout.viewSize()))) {
        return coords;
    }
    coords.bunch = scan(layout.bunchRects(), point);
    if (coords.bunch == Coords::NotFound) {
        coords.spacer = scan(layout.bunchSpacingRects(), point);
    }
    for (quint64 row = 0; row < layout.rowCount(); ++row) {
        for (quint64 column = 0; column < layout.columnCount(); ++column) {
            const GridCell &cell = layout.cellAt(row, column);
            if (cell.bunch == coords.bunch && Geometry::mouseInRect(point, cell.rect)) {
                coords.row = row;
                coords.col = column;
                return coords;
            }
        }
    }
    coords.margin = scan(layout.marginRects(), point);
    return coords;
}

// Every edge that a layout has, and a hair to both sides of it.
std::vector<QPointF> tellingPoints(const GridLayout &layout, QRandomGenerator &generator)
{
    std::vector<double> xs { 0, -1 };
    std::vector<double> ys { 0, -1 };
    const auto add = [](std::vector<double> &values, double value) {
        for (const double near : { value, std::nextafter(value, -1e9), std::nextafter(value, 1e9),
                 value + 0.5, value - 1 }) {
            values.push_back(near);
        }
    };
    const auto addRect = [&](const QRectF &rect) {
        add(xs, rect.x());
        add(xs, rect.x() + rect.width());
        add(ys, rect.y());
        add(ys, rect.y() + rect.height());
    };
    for (quint64 i = 0; i < std::max(layout.rowCount(), layout.columnCount()); ++i) {
        addRect(layout.rectOfCellForRow(i, 0));
        addRect(layout.rectOfCellForRow(0, i));
    }
    for (const auto *rects : { &layout.bunchSpacingRects(), &layout.marginRects() }) {
        std::for_each(rects->begin(), rects->end(), addRect);
    }
    std::vector<QPointF> points;
    for (int i = 0; i < 400; ++i) {
        points.emplace_back(xs[size_t(generator.bounded(int(xs.size())))],
            ys[size_t(generator.bounded(int(ys.size())))]);
    }
    return points;
}

QByteArray text(const Coords &coords)
{
    QByteArray result;
    for (const quint64 field :
        { coords.row, coords.col, coords.bunch, coords.spacer, coords.margin }) {
        result += (field == Coords::NotFound ? "-" : QByteArray::number(field)) + ' ';
    }
    return result.trimmed();
}

} // namespace

void GridHitTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void GridHitTest::pointsAreTold_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QByteArray>("expected");

    // Bunches of 5, 1 and no applications, cells of 68 spaced by 4: a view of 296 by 380 points, or
    // turned. Row, column, bunch, spacer, margin.
    const auto row = [](const char *name, int orientation, QPointF point, const char *expected) {
        QTest::newRow(name) << orientation << point << QByteArray(expected);
    };
    row("first cell", 2, { 40, 340 }, "0 0 0 - -");
    row("left edge of a cell", 2, { 114, 40 }, "4 1 1 - -");
    row("right edge is the gap", 2, { 80, 40 }, "- - - 1 -");
    row("upper edge of a cell", 2, { 40, 80 }, "4 0 0 - -");
    row("lower edge is outside", 2, { 40, 12 }, "- - 0 - 2");
    row("between two cells", 2, { 40, 82 }, "- - 0 - -");
    row("cell of an empty bunch", 2, { 220, 20 }, "4 2 2 - -");
    row("gap", 2, { 100, 200 }, "- - - 1 -");
    row("gap in the top margin", 2, { 100, 375 }, "- - - 1 0");
    row("band in the top margin", 2, { 40, 375 }, "- - 0 - 0");
    row("left margin", 2, { 5, 200 }, "- - - 0 3");
    row("right margin", 2, { 290, 200 }, "- - - 3 1");
    row("corner", 2, { 0, 380 }, "- - - 0 0");
    row("left of the view", 2, { -0.1, 200 }, "- - - - -");
    row("right edge of the view", 2, { 296, 200 }, "- - - - -");
    row("lower edge of the view", 2, { 40, 0 }, "- - - - -");
    row("stacked, first cell", 1, { 12, 284 }, "0 0 0 - -");
    row("stacked, last cell", 1, { 367, 13 }, "2 4 2 - -");
    row("stacked, gap", 1, { 40, 200 }, "- - - 1 -");
    row("stacked, band in the left margin", 1, { 5, 250 }, "- - 0 - 3");
    row("stacked, top margin", 1, { 40, 290 }, "- - - 0 0");
    row("stacked, bottom margin", 1, { 40, 12 }, "- - - 3 2");
}

void GridHitTest::pointsAreTold()
{
    QFETCH(int, orientation);
    QFETCH(QPointF, point);
    GridSettings settings { orientation };
    settings.iconSpacing = 4;
    const GridLayout layout = LayoutSamples::searched(settings, { false, false, { 5, 1, 0 } });
    QTEST(text(layout.coordsOfPoint(point)), "expected");
}

void GridHitTest::computedHits_equalThoseOfAScan()
{
    QRandomGenerator generator(12);
    for (int i = 0; i < 600; ++i) {
        const GridLayout layout = LayoutSamples::random(generator).layout;
        for (const QPointF &point : tellingPoints(layout, generator)) {
            QCOMPARE(text(layout.coordsOfPoint(point)), text(scannedCoordsOfPoint(layout, point)));
        }
    }
}

void GridHitTest::binarySearch_findsCells_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QByteArray>("expected");

    // 7 applications in 2 rows of 4, cells of 68 spaced by 4; a cell ends a point before its edge.
    for (const int orientation : { 0, 1, 2 }) {
        const auto row = [orientation](const char *name, QPointF point, const char *expected) {
            QTest::addRow("%s, %d", name, orientation)
                << orientation << point << QByteArray(expected);
        };
        row("first cell", { 12, 84 }, "0 0 - - -");
        row("its last point", { 79, 151 }, "0 0 - - -");
        row("past its last point", { 79.5, 151 }, "- - - - -");
        row("above its last point", { 79, 151.5 }, "- - - - -");
        row("last cell, empty", { 230, 12 }, "1 3 - - -");
        row("column without a row", { 230, 82 }, "- - - - -");
        row("row without a column", { 82, 50 }, "- - - - -");
        row("outside", { 230, -1 }, "- - - - -");
    }
}

void GridHitTest::binarySearch_findsCells()
{
    QFETCH(int, orientation);
    QFETCH(QPointF, point);
    GridSettings settings { orientation };
    settings.iconSpacing = 4;
    const GridLayout layout =
        LayoutSamples::searched(settings, { true, false, { 7 } }, QSizeF(600, 300));
    QCOMPARE(layout.columnCount(), quint64(4));
    QTEST(text(layout.coordsOfPoint2(point)), "expected");
}

void GridHitTest::rectOfCoords_isEmptyOutside()
{
    const GridLayout layout = LayoutSamples::searched({ 2 }, { false, false, { 5, 1, 0 } });
    QCOMPARE(layout.rectOfCoords({ 4, 2 }), QRectF(216, 12, 68, 68));
    QCOMPARE(layout.rectOfCoords({ 5, 2 }), QRectF(0, 0, 0, 0));
    QCOMPARE(layout.rectOfCoords({ 4, 3 }), QRectF(0, 0, 0, 0));
    QCOMPARE(layout.rectOfCoords({}), QRectF(0, 0, 0, 0));
}

QTEST_APPLESS_MAIN(GridHitTest)
#include "GridHitTest.moc"
