#include "grid/layout/GridLayout.h"

#include "TestCase.h"
#include "grid/LayoutSamples.h"

#include <QRandomGenerator>

#include <cmath>

using Sizes = std::vector<quint64>;

namespace {

struct Sample
{
    GridSettings settings;
    GridContents contents;
    QSizeF bounds;
    GridLayout layout;
};

// Any orientation, reading order, spacing and shape; a list without bunches where the orientation
// knows none. Never so many applications that one goes without a cell.
Sample randomSample(QRandomGenerator &generator)
{
    const auto upTo = [&generator](int most) { return generator.bounded(most + 1); };
    Sample sample;
    sample.settings = { upTo(2), 1 + upTo(1), upTo(1) == 1, 8 + upTo(120), upTo(8), upTo(8) };
    GridContents &contents = sample.contents;
    contents = { sample.settings.groupOrientation == 0 || upTo(4) == 0, upTo(3) == 0, {} };
    const int bunches = contents.isFlat ? 1 : 1 + upTo(15);
    for (int i = 0; i < bunches; ++i) {
        contents.bunchSizes.push_back(quint64(upTo(4) == 0 ? upTo(1) : upTo(14)));
    }
    sample.bounds = QSizeF(60 + upTo(2000), 60 + upTo(1200));
    sample.layout = LayoutSamples::unformed(sample.settings, contents, sample.bounds);
    sample.layout.setFrameSize(QSizeF(50, 40));
    sample.layout.calcRowColCount();
    return sample;
}

QStringList parts(const char *row, char16_t separator = u' ')
{
    return QString::fromLatin1(row).split(QChar(separator));
}

// "3x4" or "3,4" in two numbers, "5+0+1" in any number of them.
QList<double> numbers(const QString &text)
{
    QList<double> numbers;
    for (const QString &number : text.split(QRegularExpression(u"[x,+]"_s))) {
        numbers += number.toDouble();
    }
    return numbers;
}

QPointF pointOf(const QString &text)
{
    return { numbers(text)[0], numbers(text)[1] };
}

QSizeF sizeOf(const QString &text)
{
    return { numbers(text)[0], numbers(text)[1] };
}

Sizes sizesOf(const QString &text)
{
    const QList<double> sizes = numbers(text);
    return { sizes.begin(), sizes.end() };
}

QString shape(const GridLayout &layout)
{
    return u"%1x%2"_s.arg(layout.rowCount()).arg(layout.columnCount());
}

GridSettings spaced(int orientation)
{
    GridSettings settings { orientation };
    settings.iconSpacing = 4;
    return settings;
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
            texts += cell.hasApp ? text : u"-"_s;
        }
        rows += texts.join(u' ');
    }
    return rows.join(u'/');
}

// The origins and extents of rectangles along one axis.
QString along(const std::vector<QRectF> &rects, bool isVertical)
{
    QStringList texts;
    for (const QRectF &rect : rects) {
        texts += u"%1+%2"_s.arg(isVertical ? rect.y() : rect.x())
                     .arg(isVertical ? rect.height() : rect.width());
    }
    return texts.join(u' ');
}

// Row, column, bunch, spacer and margin.
QString text(const Coords &coords)
{
    QStringList fields;
    for (const quint64 field :
        { coords.row, coords.col, coords.bunch, coords.spacer, coords.margin }) {
        fields += field == Coords::NotFound ? u"-"_s : QString::number(field);
    }
    return fields.join(u' ');
}

} // namespace

class GridLayoutTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    // Flat, strip, bunches, running bunches or as few empty cells as can be; orientation; sizes;
    // area; and the shape.
    void searchFindsTheShape()
    {
        for (const char *row : {
                 "f 2 0 300x100 0x0", "f 2 1 300x100 1x1",
                 // The last try closer, the one before, both as close.
                 "f 2 7 300x100 2x4", "f 2 4 260x100 1x4", "f 2 4 250x100 2x2",
                 "f 2 5 10x100 10x1", // narrower than the list
                 "f 2 7 0x0 1x7",
                 // As wide as the screen, exactly, a hair less, less than a cell.
                 "s 2 10 300x100 3x4", "s 2 10 340x100 2x5", "s 2 10 339.9x100 3x4",
                 "s 2 10 50.5x100 10x1", "r 2 2 3000x100 2x1", "b 2 5+1+0 300x300 5x3",
                 "b 2 5+1+0 500x300 3x4", "b 1 5+1+0 300x300 3x5", "b 1 5+1+0 600x300 3x5",
                 "b 1 5+1+0 150x300 4x3", "m 2 5+1+0 300x300 2x5", "b 2 1+0+1 300x300 1x3",
                 "b 2 2 900x100 2x1", // never one row of two
                 "b 2 0+0 300x300 0x2", "b 1 0+0 300x300 2x0", "b 2 5+1+0 0x0 5x3",
                 "b 7 5+1+0 300x300 5x3" // not offered
             }) {
            const QStringList part = parts(row);
            GridSettings settings { part[1].toInt() };
            settings.minimizeEmptyCells = part[0] == u"m";
            const bool isFlat = part[0] == u"f" || part[0] == u"s";
            const bool isRunning = part[0] == u"s" || part[0] == u"r";
            const GridLayout layout = LayoutSamples::searched(settings,
                { isFlat, isRunning, sizesOf(part[2]) }, sizeOf(part[3]) + QSizeF(24, 24));
            QVERIFY2(shape(layout) == part[4], row);
        }
    }

    // Bounds, preferred size and padding of one application; icon and cell.
    void iconsShrinkUntilTheGridFits()
    {
        for (const char *row :
            { "92x92 64 2 64 68", "91.9x92 64 2 63 67", "92x82 64 2 54 58", "900x900 512 2 128 132",
                "900x900 64 20 64 80", "900x900 64 -1 64 68", "900x900 -7 2 0 4",
                "20x20 64 2 1 5", // nothing fits
                "nanx900 64 2 128 132" }) {
            const QStringList part = parts(row);
            const GridSettings settings { 2, 1, false, part[1].toInt(), part[2].toInt(), -3 };
            const GridLayout layout =
                LayoutSamples::searched(settings, { true, false, { 1 } }, sizeOf(part[0]));
            QVERIFY2(layout.iconWidth() == part[3].toULongLong(), row);
            QVERIFY2(layout.cellWidth() == part[4].toULongLong(), row);
        }
    }

    // Orientation, reading order, sizes; in twos along each line of a band.
    void cellsFollowTheReadingOrder()
    {
        for (const char *row :
            { "2 1 5+0+1: a0 a1 a2 c0/a3 a4 - -", "2 2 5+0+1: a0 a2 a4 c0/a1 a3 - -",
                "1 1 3+0+1: a0 a1/a2 -/c0 -", "1 2 3+0+1: a0 a2/a1 -/c0 -",
                "0 1 5: a0 a1 a2/a3 a4 -", "0 2 5: a0 a2 a4/a1 a3 -", "2 9 3: a0 a1/a2 -" }) {
            const QStringList part = parts(row, u':'), figures = part[0].split(u' ');
            const int orientation = figures[0].toInt();
            GridLayout layout = LayoutSamples::unformed({ orientation, figures[1].toInt() },
                { orientation == 0, false, sizesOf(figures[2]) }, { 900, 900 });
            layout.forceRowColCountForRows(orientation == 1 ? 0 : 2, orientation == 1 ? 2 : 0);
            QCOMPARE(cells(layout), part[1].trimmed());
        }
    }

    // Bunches of 5, 1 and no applications, cells of 68 and gaps of 34, spaced by 4: orientation,
    // lines forced, size; bands; spacers; first and last cell.
    void figuresOfSpacedBands()
    {
        for (const char *row :
            { "2|0|296x380|12+68 114+68 216+68|0+12 80+34 182+34 284+12|12,300|216,12",
                "2|2|368x164|12+212 258+68 360+-4|0+12 224+34 326+34 356+12|12,84|258,12",
                "1|0|380x296|216+68 114+68 12+68|284+12 182+34 80+34 0+12|12,216|300,12",
                "1|2|164x368|144+212 42+68 12+-4|356+12 110+34 8+34 0+12|12,288|84,42" }) {
            const QStringList part = parts(row, u'|');
            const bool isStacked = part[0] == u"1";
            const quint64 lines = part[1].toULongLong();
            GridLayout layout =
                LayoutSamples::searched(spaced(part[0].toInt()), { false, false, { 5, 1, 0 } });
            layout.forceRowColCountForRows(isStacked ? 0 : lines, isStacked ? lines : 0);
            const QSizeF size = layout.viewSize();
            QCOMPARE(size, sizeOf(part[2]));
            QCOMPARE(along(layout.bunchRects(), isStacked), part[3]);
            QCOMPARE(along(layout.bunchSpacingRects(), isStacked), part[4]);
            QCOMPARE(layout.rectOfCellForRow(0, 0).topLeft(), pointOf(part[5]));
            const quint64 lastRow = layout.rowCount() - 1;
            QCOMPARE(layout.rectOfCellForRow(lastRow, layout.columnCount() - 1).topLeft(),
                pointOf(part[6]));
            QCOMPARE(layout.rectOfCellForRow(lastRow + 1, 0), QRectF(0, 0, 0, 0));
        }
    }

    void anyShape_isBounded()
    {
        GridLayout layout = LayoutSamples::forced({ 2 }, { 600, 3 }, 1'000'000'000, 0);
        QCOMPARE(shape(layout), u"256x4"_s);
        layout.forceRowColCountForRows(1, 7);
        QCOMPARE(shape(layout), u"1x256"_s);
        QCOMPARE(layout.cellAt(0, 255).index, quint64(255));
        layout = LayoutSamples::searched({ 2, 1, true, 1LL << 40, -(1LL << 40), 1LL << 40 },
            { true, false, { 100'000 } }, { 1920, 1080 });
        QVERIFY(layout.rowCount() <= 256 && layout.columnCount() <= 256);
        QVERIFY(layout.iconWidth() >= 1 && layout.iconWidth() <= 128);
        QVERIFY(layout.coordsOfPoint({ qQNaN(), 1 }).isEmpty());
    }

    void randomLayouts_areConsistent()
    {
        QRandomGenerator generator(20);
        for (int i = 0; i < 2000; ++i) {
            const auto [settings, contents, bounds, layout] = randomSample(generator);
            const QSizeF size = layout.viewSize();
            const bool fits = size.width() <= bounds.width() && size.height() <= bounds.height();
            QVERIFY(fits || layout.iconWidth() == 1);
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
                    // The left and the upper edge are the cell's, the others are not.
                    const QRectF &rect = cell.rect;
                    const double right = rect.x() + rect.width(), top = rect.y() + rect.height();
                    const QString place = text({ row, column, cell.bunch });
                    for (const QPointF &inside : { QPointF(rect.x(), top),
                             QPointF(std::nextafter(right, 0), std::nextafter(rect.y(), 1e9)) }) {
                        QVERIFY(text(layout.coordsOfPoint(inside)) == place || isGapNarrow);
                    }
                    QVERIFY(text(layout.coordsOfPoint({ right, top })) != place);
                    QVERIFY(text(layout.coordsOfPoint(rect.topLeft())) != place);
                }
            }
            for (const std::vector<int> &bunch : seen) {
                QCOMPARE(std::count(bunch.begin(), bunch.end(), 1), qsizetype(bunch.size()));
            }
        }
    }

    // Bunches of 5, 1 and no applications, cells of 68 spaced by 4: a view of 296 by 380 points, or
    // turned.
    void pointsAreTold()
    {
        for (const char *row : { // Cells with their edges, and between them.
                 "2 40,340: 0 0 0 - -", "2 114,40: 4 1 1 - -", "2 80,40: - - - 1 -",
                 "2 40,80: 4 0 0 - -", "2 40,12: - - 0 - 2", "2 40,82: - - 0 - -",
                 "2 220,20: 4 2 2 - -",
                 // Gaps, bands and margins.
                 "2 100,200: - - - 1 -", "2 100,375: - - - 1 0", "2 40,375: - - 0 - 0",
                 "2 5,200: - - - 0 3", "2 290,200: - - - 3 1", "2 0,380: - - - 0 0",
                 // Outside.
                 "2 -0.1,200: - - - - -", "2 296,200: - - - - -", "2 40,0: - - - - -",
                 // Stacked.
                 "1 12,284: 0 0 0 - -", "1 367,13: 2 4 2 - -", "1 40,200: - - - 1 -",
                 "1 5,250: - - 0 - 3", "1 40,290: - - - 0 0", "1 40,12: - - - 3 2" }) {
            const QStringList part = parts(row, u':');
            const GridLayout layout = LayoutSamples::searched(
                spaced(part[0].left(1).toInt()), { false, false, { 5, 1, 0 } });
            const Coords found = layout.coordsOfPoint(pointOf(part[0].mid(2)));
            QVERIFY2(text(found) == part[1].trimmed(), row);
        }
    }
};

QTEST_APPLESS_MAIN(GridLayoutTest)
#include "GridLayoutTest.moc"
