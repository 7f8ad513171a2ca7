#include "grid/drawing/GridPainter.h"

#include "TestCase.h"
#include "grid/LayoutSamples.h"
#include "grid/drawing/MenuColors.h"
#include "support/Contrast.h"
#include "support/UserDefaults.h"

#include <QMenu>
#include <QPainter>

#include <cmath>
#include <functional>

namespace {

constexpr GridSettings Stacked { 1, 2 };
constexpr GridSettings SideBySide { 2, 1 };
// The one that leaves most to round.
constexpr double Ratio = 1.5;

using Drawing = std::function<void(GridPainter &)>;

GridColors opaqueWindow()
{
    GridColors colors;
    colors.winAlpha = 1;
    return colors;
}

QImage drawn(const GridLayout &layout, const Drawing &drawing, const GridColors &colors)
{
    const QSizeF size = layout.viewSize();
    QImage image((size * Ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(Ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    GridPainter gridPainter(painter, layout, colors, size.height());
    drawing(gridPainter);
    return image;
}

QImage drawn(const GridLayout &layout, const Drawing &drawing)
{
    return drawn(layout, drawing, opaqueWindow());
}

// An icon of 64 points in a cell of 68, in a view of 92.
GridLayout oneCell(const GridSettings &settings = SideBySide)
{
    return LayoutSamples::searched(settings, { true, false, { 1 } });
}

// Two such cells with a gap of 34 between them.
GridLayout twoBands(const GridSettings &settings)
{
    const bool isStacked = settings.groupOrientation == 1;
    return LayoutSamples::forced(settings, { 1, 1 }, isStacked ? 0 : 1, isStacked ? 1 : 0);
}

// No pixel of it is like its neighbours.
QImage picture(int points = 64)
{
    const int edge = int(std::lround(points * Ratio));
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    for (int i = 0; i < edge * edge; ++i) {
        const int x = i % edge, y = i / edge;
        image.setPixel(x, y, (x + y) % 2 == 0 ? qRgb(x, y, 255) : qRgb(0, 255, 0));
    }
    image.setDevicePixelRatio(Ratio);
    return image;
}

// What a row or a column shows: "first+count" for every stretch of pixels of one opacity. A blurred
// edge is a stretch of its own.
QString stretches(const QImage &image, Qt::Orientation along, double at)
{
    QString text;
    const auto alpha = [&](int i) {
        const QPoint point(i, int(at * Ratio));
        return qAlpha(image.pixel(along == Qt::Horizontal ? point : point.transposed()));
    };
    const int end = along == Qt::Horizontal ? image.width() : image.height();
    for (int i = 0; i < end;) {
        const int first = i++;
        while (i < end && alpha(i) == alpha(first)) {
            ++i;
        }
        if (alpha(first) != 0) {
            text += u" %1+%2"_s.arg(first).arg(i - first);
        }
    }
    return text.trimmed();
}

} // namespace

class GridPainterTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void highlightsHaveCrispEdges()
    {
        GridColors colors;
        const auto image = [&](bool isFilled, bool isStroked) {
            colors.drawFilledIconHighlight = isFilled;
            colors.drawStrokedIconHighlight = isStroked;
            return drawn(
                oneCell(),
                [](GridPainter &painter) {
                    painter.drawCell(0, 0, { true, true, false }, true, {});
                },
                colors);
        };
        // With both, a pixel is left free before the next cell, which begins at 80 points.
        for (const auto &[isFilled, isStroked, edges] :
            { std::tuple(false, false, u""_s), std::tuple(true, false, u"20+98"_s),
                std::tuple(false, true, u"18+3 116+3"_s), std::tuple(true, true, u"18+101"_s) }) {
            for (const Qt::Orientation along : { Qt::Horizontal, Qt::Vertical }) {
                QCOMPARE(stretches(image(isFilled, isStroked), along, 46), edges);
            }
        }
        QCOMPARE(image(true, true).pixel(69, 22), qRgb(255, 0, 0));
    }

    void picturesAreCopiedPixelByPixel()
    {
        // Icons of 63 points end within a pixel, and the second of 64 begins in one.
        for (const int points : { 63, 64 }) {
            GridSettings settings = SideBySide;
            settings.iconSpacing = 1;
            settings.maximumIconSize = points;
            const QImage icon = picture(points);
            const QImage image =
                drawn(LayoutSamples::forced(settings, { 2 }, 1, 0), [&](GridPainter &painter) {
                    painter.drawCell(0, 0, {}, false, icon);
                    painter.drawCell(0, 1, {}, false, icon);
                });
            for (const int x : { 14, 14 + points + 5 }) {
                const QPoint at(int(std::lround(x * Ratio)), int(14 * Ratio));
                QCOMPARE(image.copy(QRect(at, icon.size())), icon);
            }
        }
    }

    void aDimmedCellIsDimmedThroughout()
    {
        const auto middle = [](bool isHighlighted, const QImage &icon) {
            const CellLook look { false, isHighlighted, false };
            return drawn(oneCell(), [&](GridPainter &painter) {
                painter.drawCell(0, 0, look, false, icon);
            }).pixelColor(69, 69);
        };
        // Opacities are rounded on the way.
        QVERIFY(std::abs(middle(false, picture()).alpha() - 38) <= 1);
        QVERIFY(std::abs(middle(true, {}).alpha() - 38) <= 1);
    }

    void aDecoratedCellMakesRoomForATriangle()
    {
        for (const GridSettings &settings : { Stacked, SideBySide }) {
            const bool isOnTheLeft = settings.groupOrientation == 1;
            const QImage image = drawn(oneCell(settings), [&](GridPainter &painter) {
                painter.drawCell(0, 0, { true, false, true }, false, picture());
            });
            // Past the end of the triangle, where the picture alone is met.
            const auto squeezed = isOnTheLeft ? Qt::Horizontal : Qt::Vertical;
            QCOMPARE(stretches(image, squeezed, 76), u"39+78"_s);
            const QPoint inTriangle(int(19 * Ratio), int(46 * Ratio));
            QVERIFY(qAlpha(image.pixel(isOnTheLeft ? inTriangle : inTriangle.transposed())) > 127);
        }
    }

    void linesStandOnPixels()
    {
        // The first one moving elsewhere; then between bands, and at both ends of them.
        const std::tuple<GridSettings, quint64, bool, const char *> rows[] {
            { Stacked, Coords::NotFound, true, "144+2" }, { SideBySide, 1, false, "145+2" },
            { SideBySide, 1, true, "120+2 169+2" }, { Stacked, 1, true, "120+2 169+2" },
            { SideBySide, 0, true, "16+2 145+2" }, { SideBySide, 2, true, "145+2 273+2" },
            { Stacked, 0, true, "16+2 144+2" }, { Stacked, 2, true, "144+2 273+2" }
        };
        for (const auto &[settings, spacer, isMoving, expected] : rows) {
            Coords selected;
            selected.spacer = spacer;
            const QImage image =
                drawn(twoBands(settings), [&, isMoving = isMoving](GridPainter &painter) {
                    painter.drawSeparators(selected, isMoving);
                });
            const auto along = settings.groupOrientation == 1 ? Qt::Vertical : Qt::Horizontal;
            // From margin to margin.
            QCOMPARE(stretches(image, along, 11) + stretches(image, along, 80), QString());
            QCOMPARE(stretches(image, along, 12), QLatin1String(expected));
            QCOMPARE(stretches(image, along, 79), QLatin1String(expected));
        }
    }

    void preferencesGiveTheColors()
    {
        UserDefaults defaults;
        UserDefaults::setStandard(&defaults);
        GridColors::registerDefaults();
        const GridColors registered = GridColors::fromPreferences();
        QVERIFY(registered.excludedOpacity == 0.15F && registered.winAlpha == 0.85F);
        QCOMPARE(registered.textColor, QColor(Qt::white));
        QVERIFY(registered.drawFilledIconHighlight && !registered.drawStrokedIconHighlight);

        defaults.setObject(u"windowAlpha"_s, 7.0);
        defaults.setObject(u"windowColor"_s, u"#ffff00"_s);
        defaults.setObject(u"iconHighlightColor"_s, u"reddish"_s);
        QTest::ignoreMessage(
            QtWarningMsg, "iconHighlightColor: \"reddish\" is no colour and is not used");
        // Named once, however often it is read.
        GridColors read = GridColors::fromPreferences();
        read = GridColors::fromPreferences();
        QCOMPARE(read.winAlpha, 1.0F);
        QCOMPARE(read.textColor, QColor(Qt::black));
        QCOMPARE(read.iconHighlightColor, QColor(Qt::red));
    }

    void menusFollowTheWindow()
    {
        QMenu menu;
        GridColors colors;
        for (const auto &[window, isDark] :
            { std::pair(Qt::black, true), std::pair(Qt::darkBlue, true), std::pair(Qt::gray, false),
                std::pair(Qt::yellow, false) }) {
            colors.winColor = window;
            setMenuColors(menu, colors);
            const QPalette shown = menu.palette();
            QCOMPARE(shown.color(QPalette::Window).lightness() < 110, isDark);
            for (const auto &[ground, text] : { std::pair(QPalette::Window, QPalette::Text),
                     std::pair(QPalette::Highlight, QPalette::HighlightedText) }) {
                QVERIFY(
                    Contrast::ratio(shown.color(ground), shown.color(text)) >= Contrast::Enough);
            }
        }
    }
};

QTEST_MAIN(GridPainterTest)
#include "GridPainterTest.moc"
