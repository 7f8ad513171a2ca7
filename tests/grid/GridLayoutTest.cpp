#include "grid/GridLayout.h"

#include "grid/GridGroups.h"
#include "grid/LayoutSamples.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <limits>

using Sizes = std::vector<quint64>;

class GridLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void searchFindsTheShape_data();
    void searchFindsTheShape();
    void iconsShrinkUntilTheGridFits_data();
    void iconsShrinkUntilTheGridFits();
    void cellsFollowTheReadingOrder_data();
    void cellsFollowTheReadingOrder();
    void figuresOfSpacedBands_data();
    void figuresOfSpacedBands();
    void emptyGroup_hasTheSizeOfTheView();
    void forcedShape_isClampedAndNeedsNoSearch();
    void settingsWaitForTheNextLayout();
    void sizesOfACellAndOfTheViewAreInverse();
    void randomLayouts_areConsistent();
    void hostileInput_isBounded();
    void groupToShow();
};

namespace {

QString shape(const GridLayout &layout)
{
    return QStringLiteral("%1x%2").arg(layout.rowCount()).arg(layout.columnCount());
}

// Row by row: the bunch as a letter with the index in it, a dash for an empty cell.
QString cells(const GridLayout &layout)
{
    QStringList rows;
    for (quint64 row = 0; row < layout.rowCount(); ++row) {
        QStringList texts;
        for (quint64 column = 0; column < layout.columnCount(); ++column) {
            const GridCell &cell = layout.cellAt(row, column);
            const QString text = QChar(char16_t(u'a' + cell.bunch)) + QString::number(cell.index);
            texts += cell.hasApp ? text : QStringLiteral("-");
        }
        rows += texts.join(QLatin1Char(' '));
    }
    return rows.join(QLatin1Char('/'));
}

// The origins and extents of rectangles along one axis.
QString along(const std::vector<QRectF> &rects, Qt::Orientation axis)
{
    QStringList texts;
    for (const QRectF &rect : rects) {
        texts += axis == Qt::Horizontal ? QStringLiteral("%1+%2").arg(rect.x()).arg(rect.width())
                                        : QStringLiteral("%1+%2").arg(rect.y()).arg(rect.height());
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

void GridLayoutTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void GridLayoutTest::searchFindsTheShape_data()
{
    QTest::addColumn<GridContents>("contents");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("minimizeEmptyCells");
    QTest::addColumn<QSizeF>("area");
    QTest::addColumn<QString>("expected");

    const auto flat = [](quint64 count) { return GridContents { true, false, { count } }; };
    const auto strip = [](quint64 count) { return GridContents { true, true, { count } }; };
    const auto bunches = [](const Sizes &sizes) { return GridContents { false, false, sizes }; };
    const auto row = [](const char *name, const GridContents &contents, int orientation,
                         const QSizeF &area, const char *expected, bool minimize = false) {
        QTest::newRow(name) << contents << orientation << minimize << area
                            << QString::fromLatin1(expected);
    };
    row("nothing", flat(0), 2, { 300, 100 }, "0x0");
    row("one", flat(1), 2, { 300, 100 }, "1x1");
    row("last try closer", flat(7), 2, { 300, 100 }, "2x4");
    row("previous try closer", flat(4), 2, { 260, 100 }, "1x4");
    row("both as close", flat(4), 2, { 250, 100 }, "2x2");
    row("narrower than the list", flat(5), 2, { 10, 100 }, "10x1");
    row("area of nothing", flat(7), 2, { 0, 0 }, "1x7");
    row("no width", flat(7), 2, { 0, 100 }, "7x1");
    row("no height", flat(7), 2, { 100, 0 }, "1x7");
    row("strip of the screen's width", strip(10), 2, { 300, 100 }, "3x4");
    row("strip exactly as wide", strip(10), 2, { 340, 100 }, "2x5");
    row("strip a hair too wide", strip(10), 2, { 339.9, 100 }, "3x4");
    row("strip less wide than a cell", strip(10), 2, { 50.5, 100 }, "10x1");
    row("bunches that count as running", { false, true, { 2 } }, 2, { 3000, 100 }, "2x1");
    row("side by side", bunches({ 5, 1, 0 }), 2, { 300, 300 }, "5x3");
    row("side by side, wide", bunches({ 5, 1, 0 }), 2, { 500, 300 }, "3x4");
    row("stacked", bunches({ 5, 1, 0 }), 1, { 300, 300 }, "3x5");
    row("stacked, wide", bunches({ 5, 1, 0 }), 1, { 600, 300 }, "3x5");
    row("stacked, tall", bunches({ 5, 1, 0 }), 1, { 150, 300 }, "4x3");
    row("fewer empty cells", bunches({ 5, 1, 0 }), 2, { 300, 300 }, "2x5", true);
    row("single icons", bunches({ 1, 0, 1 }), 2, { 300, 300 }, "1x3");
    row("never one row of two", bunches({ 2 }), 2, { 900, 100 }, "2x1");
    row("empty bunches", bunches({ 0, 0 }), 2, { 300, 300 }, "0x2");
    row("empty bunches, stacked", bunches({ 0, 0 }), 1, { 300, 300 }, "2x0");
    row("bunches in no area", bunches({ 5, 1, 0 }), 2, { 0, 0 }, "5x3");
    row("orientation not offered", bunches({ 5, 1, 0 }), 7, { 300, 300 }, "5x3");
}

void GridLayoutTest::searchFindsTheShape()
{
    QFETCH(GridContents, contents);
    QFETCH(int, orientation);
    QFETCH(bool, minimizeEmptyCells);
    QFETCH(QSizeF, area);
    GridSettings settings { orientation };
    settings.minimizeEmptyCells = minimizeEmptyCells;
    const GridLayout layout = LayoutSamples::searched(settings, contents, area + QSizeF(24, 24));
    QTEST(shape(layout), "expected");
}

void GridLayoutTest::iconsShrinkUntilTheGridFits_data()
{
    QTest::addColumn<QSizeF>("bounds");
    QTest::addColumn<qint64>("maximumIconSize");
    QTest::addColumn<qint64>("iconPadding");
    QTest::addColumn<quint64>("iconWidth");
    QTest::addColumn<quint64>("cellWidth");

    // One application: a cell and the margins.
    const auto row = [](const char *name, const QSizeF &bounds, qint64 size, qint64 padding,
                         quint64 icon, quint64 cell) {
        QTest::newRow(name) << bounds << size << padding << icon << cell;
    };
    row("fits exactly", { 92, 92 }, 64, 2, 64, 68);
    row("a hair too wide", { 91.9, 92 }, 64, 2, 63, 67);
    row("too high by ten", { 92, 82 }, 64, 2, 54, 58);
    row("larger than any icon", { 900, 900 }, 512, 2, 128, 132);
    row("padding of no limit", { 900, 900 }, 64, 20, 64, 80);
    row("padding of none", { 900, 900 }, 64, -1, 64, 68);
    row("icons of nothing", { 900, 900 }, 0, 2, 0, 4);
    row("icons less than nothing", { 900, 900 }, -7, 2, 0, 4);
    row("nothing fits", { 20, 20 }, 64, 2, 1, 5);
    row("no bounds: as it was", { 0, 900 }, 64, 2, 128, 132);
    row("bounds not a number: as it was", { qQNaN(), 900 }, 64, 2, 128, 132);
}

void GridLayoutTest::iconsShrinkUntilTheGridFits()
{
    QFETCH(QSizeF, bounds);
    QFETCH(qint64, maximumIconSize);
    QFETCH(qint64, iconPadding);
    const GridSettings settings { 2, 1, false, maximumIconSize, iconPadding, -3 };
    const GridLayout layout = LayoutSamples::searched(settings, { true, false, { 1 } }, bounds);
    QTEST(layout.iconWidth(), "iconWidth");
    QTEST(layout.cellWidth(), "cellWidth");
}

void GridLayoutTest::cellsFollowTheReadingOrder_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("readingOrder");
    QTest::addColumn<Sizes>("bunchSizes");
    QTest::addColumn<QString>("expected");

    // In twos along each line of a band.
    QTest::newRow("columns, across") << 2 << 1 << Sizes { 5, 0, 1 } << "a0 a1 a2 c0/a3 a4 - -";
    QTest::newRow("columns, down") << 2 << 2 << Sizes { 5, 0, 1 } << "a0 a2 a4 c0/a1 a3 - -";
    QTest::newRow("rows, across") << 1 << 1 << Sizes { 3, 0, 1 } << "a0 a1/a2 -/c0 -";
    QTest::newRow("rows, down") << 1 << 2 << Sizes { 3, 0, 1 } << "a0 a2/a1 -/c0 -";
    QTest::newRow("flat, across") << 0 << 1 << Sizes { 5 } << "a0 a1 a2/a3 a4 -";
    QTest::newRow("flat, down") << 0 << 2 << Sizes { 5 } << "a0 a2 a4/a1 a3 -";
    QTest::newRow("order not offered") << 2 << 9 << Sizes { 3 } << "a0 a1/a2 -";
}

void GridLayoutTest::cellsFollowTheReadingOrder()
{
    QFETCH(int, orientation);
    QFETCH(int, readingOrder);
    QFETCH(Sizes, bunchSizes);
    GridLayout layout = LayoutSamples::unformed(
        { orientation, readingOrder }, { orientation == 0, false, bunchSizes }, { 900, 900 });
    layout.forceRowColCountForRows(orientation == 1 ? 0 : 2, orientation == 1 ? 2 : 0);
    QTEST(cells(layout), "expected");
}

void GridLayoutTest::figuresOfSpacedBands_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("forcedLines");
    QTest::addColumn<QSizeF>("viewSize");
    QTest::addColumn<QString>("bands");
    QTest::addColumn<QString>("spacers");
    QTest::addColumn<QPointF>("firstCell");
    QTest::addColumn<QPointF>("lastCell");

    // Bunches of 5, 1 and no applications, cells of 68 and gaps of 34, spaced by 4.
    QTest::newRow("side by side") << 2 << 0 << QSizeF(296, 380) << "12+68 114+68 216+68"
                                  << "0+12 80+34 182+34 284+12" << QPointF(12, 300)
                                  << QPointF(216, 12);
    QTest::newRow("side by side, forced")
        << 2 << 2 << QSizeF(368, 164) << "12+212 258+68 360+-4"
        << "0+12 224+34 326+34 356+12" << QPointF(12, 84) << QPointF(258, 12);
    QTest::newRow("stacked") << 1 << 0 << QSizeF(380, 296) << "216+68 114+68 12+68"
                             << "284+12 182+34 80+34 0+12" << QPointF(12, 216) << QPointF(300, 12);
    QTest::newRow("stacked, forced")
        << 1 << 2 << QSizeF(164, 368) << "144+212 42+68 12+-4"
        << "356+12 110+34 8+34 0+12" << QPointF(12, 288) << QPointF(84, 42);
}

void GridLayoutTest::figuresOfSpacedBands()
{
    QFETCH(int, orientation);
    QFETCH(int, forcedLines);
    const auto lines = quint64(forcedLines);
    GridSettings settings { orientation };
    settings.iconSpacing = 4;
    const bool isStacked = orientation == 1;
    const Qt::Orientation axis = isStacked ? Qt::Vertical : Qt::Horizontal;
    GridLayout layout = LayoutSamples::searched(settings, { false, false, { 5, 1, 0 } });
    layout.forceRowColCountForRows(isStacked ? 0 : lines, isStacked ? lines : 0);

    QTEST(layout.viewSize(), "viewSize");
    QTEST(along(layout.bunchRects(), axis), "bands");
    QTEST(along(layout.bunchSpacingRects(), axis), "spacers");
    QTEST(layout.rectOfCellForRow(0, 0).topLeft(), "firstCell");
    const quint64 lastRow = layout.rowCount() - 1;
    QTEST(layout.rectOfCellForRow(lastRow, layout.columnCount() - 1).topLeft(), "lastCell");
    QCOMPARE(layout.rectOfCellForRow(lastRow + 1, 0), QRectF(0, 0, 0, 0));
    const double width = layout.viewSize().width();
    const double height = layout.viewSize().height();
    const std::vector<QRectF> margins { { 0, height - 12, width, 12 },
        { width - 12, 0, 12, height }, { 0, 0, width, 12 }, { 0, 0, 12, height } };
    QCOMPARE(layout.marginRects(), margins);
}

void GridLayoutTest::emptyGroup_hasTheSizeOfTheView()
{
    GridLayout layout = LayoutSamples::searched({}, { true, false, { 40 } });
    layout.setFrameSize({ 640, 480 });
    for (const Sizes &nothing : { Sizes {}, Sizes { 0 } }) {
        layout.setContents({ true, false, nothing });
        layout.calcRowColCount();
        QCOMPARE(shape(layout), QStringLiteral("0x0"));
        QCOMPARE(layout.bunchCount(), quint64(0));
        QCOMPARE(layout.viewSize(), QSizeF(640, 480));
        QVERIFY(layout.bunchRects().empty() && layout.bunchSpacingRects().empty());
        QVERIFY(layout.coordsOfPoint({ 5, 5 }).isEmpty());
        QVERIFY(layout.coordsOfPoint2({ 5, 5 }).isEmpty());
    }
}

void GridLayoutTest::forcedShape_isClampedAndNeedsNoSearch()
{
    GridLayout layout = LayoutSamples::forced({ 2 }, { 600, 3 }, 1'000'000'000, 0);
    QCOMPARE(shape(layout), QStringLiteral("256x4"));
    QCOMPARE(layout.bunchCount(), quint64(2));
    layout.forceRowColCountForRows(0, 0);
    QCOMPARE(shape(layout), QStringLiteral("256x4"));
    layout.forceRowColCountForRows(1, 7);
    QCOMPARE(shape(layout), QStringLiteral("1x256"));
    QCOMPARE(layout.cellAt(0, 255).index, quint64(255));
    layout.setContents({ false, false, {} });
    layout.forceRowColCountForRows(3, 0);
    QCOMPARE(shape(layout), QStringLiteral("3x0"));
    QVERIFY(layout.bunchRects().empty());
}

// What is set is not mixed with tables that were made before it.
void GridLayoutTest::settingsWaitForTheNextLayout()
{
    GridLayout layout = LayoutSamples::searched({ 2 }, { false, false, Sizes(12, 3) });
    const QSizeF size = layout.viewSize();
    const Coords coords = layout.coordsOfPoint({ size.width() - 20, 20 });
    layout.setSettings({ 1, 2, false, 32, 8, 8 });
    layout.setContents({ true, false, { 1 } });
    QCOMPARE(layout.viewSize(), size);
    QCOMPARE(layout.coordsOfPoint({ size.width() - 20, 20 }), coords);
    QCOMPARE(coords.bunch, quint64(11));
    layout.calcRowColCount();
    QCOMPARE(layout.viewSize(), QSizeF(72, 72));
}

void GridLayoutTest::sizesOfACellAndOfTheViewAreInverse()
{
    GridSettings settings { 2 };
    settings.iconSpacing = 4;
    const GridContents contents { false, false, { 5, 1, 0 } };
    const GridLayout columns = LayoutSamples::searched(settings, contents);
    settings.groupOrientation = 1;
    const GridLayout rows = LayoutSamples::searched(settings, contents);
    for (const double edge : { 4, 50, 132 }) {
        const QSizeF cell(edge, edge);
        QCOMPARE(columns.cellSizeForViewSize(columns.viewSizeForCellSize(cell, 5, 3), 5, 3), cell);
        QCOMPARE(rows.cellSizeForViewSize(rows.viewSizeForCellSize(cell, 3, 5), 3, 5), cell);
    }
    QCOMPARE(columns.cellSizeForViewSize({ 299, 383 }, 5, 3), QSizeF(68, 68));
    QCOMPARE(columns.cellSizeForViewSize({ 300, 385 }, 5, 3), QSizeF(69, 69));
    QCOMPARE(columns.cellSizeForViewSize({ 300, 385 }, 0, 3), QSizeF(0, 0));
    QCOMPARE(columns.cellSizeForViewSize({ 300, -1 }, 5, 3), QSizeF(0, 0));
    QCOMPARE(columns.viewSizeForCellSize({ 10, 10 }, -1, 3), QSizeF(0, 0));
    settings.groupOrientation = 0;
    const GridLayout flat = LayoutSamples::searched(settings, { true, false, { 15 } });
    QCOMPARE(flat.viewSizeForCellSize({ 10, 10 }, 3, 5), QSizeF(90, 62));
    QCOMPARE(flat.cellSizeForViewSize({ 300, 300 }, 3, 5), QSizeF(0, 0));
    QVERIFY(columns.viewSizeForCellSize({ 1e300, 1e300 }, 3, 5).width() > 1e300);
}

void GridLayoutTest::randomLayouts_areConsistent()
{
    QRandomGenerator generator(20);
    for (int i = 0; i < 2000; ++i) {
        const auto [settings, contents, bounds, layout] = LayoutSamples::random(generator);
        const QSizeF size = layout.viewSize();
        const bool fits = size.width() <= bounds.width() && size.height() <= bounds.height();
        QVERIFY(fits || layout.iconWidth() == 1);
        const bool isStacked = settings.groupOrientation == 1;
        const QRectF inner(12, 12, size.width() - 24, size.height() - 24);
        const bool isGapNarrow = qint64(layout.cellWidth() / 2) < settings.iconSpacing;
        std::vector<std::vector<int>> seen;
        for (const quint64 bunchSize : contents.bunchSizes) {
            seen.emplace_back(bunchSize, 0);
        }
        for (quint64 row = 0; row < layout.rowCount(); ++row) {
            for (quint64 column = 0; column < layout.columnCount(); ++column) {
                const GridCell &cell = layout.cellAt(row, column);
                QCOMPARE(cell.hasApp, cell.index < seen[cell.bunch].size());
                if (cell.hasApp) {
                    ++seen[cell.bunch][cell.index];
                }
                QVERIFY(layout.bunchRects()[cell.bunch].contains(cell.rect));
                // Where a gap is narrower than the spacing, empty bunches draw the view in.
                QVERIFY(inner.contains(cell.rect) || isGapNarrow);
            }
        }
        for (const std::vector<int> &bunch : seen) {
            QCOMPARE(std::count(bunch.begin(), bunch.end(), 1), qsizetype(bunch.size()));
        }
        if (layout.isValidRow(0, 0) && !contents.isFlat) {
            double extent = 0;
            for (const auto *rects : { &layout.bunchRects(), &layout.bunchSpacingRects() }) {
                for (const QRectF &rect : *rects) {
                    extent += isStacked ? rect.height() : rect.width();
                }
            }
            QCOMPARE(extent, isStacked ? size.height() : size.width());
        }
    }
}

void GridLayoutTest::hostileInput_isBounded()
{
    const double inf = std::numeric_limits<double>::infinity();
    const double far = 1e300;
    Sizes uneven(400, 1);
    for (quint64 i = 0; i < uneven.size(); ++i) {
        uneven[i] = i;
    }
    const std::vector<GridContents> many { { true, false, { 100'000 } },
        { true, true, { 100'000 } }, { true, false, { 1 } }, { true, true, { 1 } },
        { false, false, { 100'000 } }, { false, false, Sizes(100'000, 1) },
        { false, false, Sizes(100'000, 0) }, { false, false, uneven } };
    const QList<QSizeF> bounds { { 1920, 1080 }, { 0, 0 }, { 24, 24 }, { -1e9, 30.5 },
        { 18.5, 1080 }, { 24.0000001, 1e9 }, { far, 1e-300 }, { inf, inf }, { qQNaN(), qQNaN() } };
    for (int i = 0; i < int(many.size() * bounds.size()) * 6; ++i) {
        const int orientation = i % 3;
        const quint64 forcedRows = i / 3 % 2 == 0 ? 0 : 1'000'000'000;
        const GridContents &contents = many[size_t(i) / 6 % many.size()];
        const QSizeF &area = bounds[i / 6 / int(many.size())];
        GridLayout layout = LayoutSamples::unformed(
            { orientation, 1, true, 1LL << 40, -(1LL << 40), 1LL << 40 }, contents, area);
        layout.calcRowColCount();
        layout.forceRowColCountForRows(forcedRows, 0);
        QVERIFY(layout.rowCount() <= 256 && layout.columnCount() <= 256);
        QVERIFY(layout.bunchRects().size() <= 256);
        QVERIFY(layout.iconWidth() >= 1 && layout.iconWidth() <= 128);
        for (const QPointF &point : { QPointF(0, 1), QPointF(qQNaN(), 1), QPointF(far, far),
                 QPointF(-far, 0), QPointF(40, 40) }) {
            const Coords coords = layout.coordsOfPoint(point);
            QVERIFY(coords.row == Coords::NotFound || layout.rectOfCoords(coords).contains(point));
            layout.coordsOfPoint2(point);
        }
    }
}

void GridLayoutTest::groupToShow()
{
    const auto shown = [](int orientation, bool isOptionHeld) {
        QList<int> groups;
        for (int group = -1; group < 10; ++group) {
            groups += groupToShowConsideringModifiers(group, isOptionHeld, orientation);
        }
        return groups;
    };
    QCOMPARE(shown(2, false), QList({ -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9 }));
    QCOMPARE(shown(1, true), QList({ -1, 0, 5, 6, 3, 4, 5, 6, 7, 8, 9 }));
    QCOMPARE(shown(0, false), QList({ -1, 0, 2, 2, 4, 4, 6, 6, 7, 9, 9 }));
    QCOMPARE(shown(0, true), QList({ -1, 0, 6, 6, 4, 4, 6, 6, 7, 9, 9 }));
}

QTEST_APPLESS_MAIN(GridLayoutTest)
#include "GridLayoutTest.moc"
