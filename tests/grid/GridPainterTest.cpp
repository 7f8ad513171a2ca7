#include "grid/drawing/GridPainter.h"

#include "TestCase.h"
#include "grid/LayoutSamples.h"
#include "grid/drawing/MenuColors.h"
#include "support/Contrast.h"
#include "support/UserDefaults.h"

#include <QBitmap>
#include <QMenu>
#include <QPainter>

#include <cmath>
#include <functional>

namespace {

constexpr GridSettings Stacked { 1, 2 };
constexpr GridSettings SideBySide { 2, 1 };
constexpr GridSettings ReadAcross { 0, 1 };
constexpr GridSettings ReadDown { 0, 2 };
constexpr double Ratios[] = { 1, 1.5, 2 };

using Drawing = std::function<void(GridPainter &, double ratio)>;

GridColors opaqueWindow()
{
    GridColors colors;
    colors.winAlpha = 1;
    return colors;
}

QImage drawn(const GridLayout &layout, double ratio, const Drawing &drawing,
    const GridColors &colors = opaqueWindow())
{
    const QSizeF size = layout.viewSize();
    QImage image((size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    GridPainter gridPainter(painter, layout, colors, size.height());
    drawing(gridPainter, ratio);
    return image;
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
QImage picture(double ratio, int points = 64)
{
    const int edge = int(std::lround(points * ratio));
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < edge; ++y) {
        for (int x = 0; x < edge; ++x) {
            image.setPixel(x, y, (x + y) % 2 == 0 ? qRgb(x, y, 255) : qRgb(0, 255, 0));
        }
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

// What a row or a column shows at each of the ratios: "first+count" for every stretch of pixels of
// one opacity. A blurred edge is a stretch of its own.
QString stretches(const GridLayout &layout, Qt::Orientation along, double at,
    const Drawing &drawing, const GridColors &colors = opaqueWindow())
{
    QStringList texts;
    for (const double ratio : Ratios) {
        QString text;
        const QImage image = drawn(layout, ratio, drawing, colors);
        const auto alpha = [&](int i) {
            const QPoint point(i, int(at * ratio));
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
        texts += text.trimmed();
    }
    return texts.join(QLatin1String(", "));
}

// Which corners of its rectangle a triangle reaches towards: "#./#." when it points right.
QString corners(QImage image, const QRectF &rect)
{
    QString text = u"../.."_s;
    for (int i = 0; i < 4; ++i) {
        const QPointF away(
            (i % 2 - 0.5) * 0.76 * rect.width(), (i / 2 - 0.5) * 0.76 * rect.height());
        const QPointF corner = (rect.center() + away) * image.devicePixelRatio();
        if (qAlpha(image.pixel(int(corner.x()), int(corner.y()))) > 127) {
            text[i / 2 * 3 + i % 2] = u'#';
        }
    }
    return text;
}

QRect ink(QImage image)
{
    image.setDevicePixelRatio(1);
    return QRegion(QBitmap::fromImage(image.createAlphaMask(Qt::ThresholdDither))).boundingRect();
}

} // namespace

class GridPainterTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void highlightsHaveCrispEdges()
    {
        const Drawing cell = [](GridPainter &painter, double) {
            painter.drawCell(0, 0, { true, true, false }, true, {});
        };
        GridColors colors;
        const auto edges = [&](bool isFilled, bool isStroked) {
            colors.drawFilledIconHighlight = isFilled;
            colors.drawStrokedIconHighlight = isStroked;
            const QString text = stretches(oneCell(), Qt::Horizontal, 46, cell, colors);
            return text == stretches(oneCell(), Qt::Vertical, 46, cell, colors) ? text : QString();
        };

        QCOMPARE(edges(false, false), u", , "_s);
        QCOMPARE(edges(true, false), u"13+66, 20+98, 26+132"_s);
        QCOMPARE(edges(false, true), u"12+2 77+2, 18+3 116+3, 24+4 155+4"_s);
        // A pixel is left free before the next cell, which begins at 80 points.
        QCOMPARE(edges(true, true), u"12+67, 18+101, 24+135"_s);
        const QImage image = drawn(oneCell(), 1, cell, colors);
        QCOMPARE(image.pixel(46, 13), qRgb(255, 0, 0));
        QVERIFY(qAlpha(image.pixel(12, 12)) < 64);
    }

    void picturesAreCopiedPixelByPixel()
    {
        // At a ratio of 1.5 icons of 63 points end within a pixel, and the second of 64 begins in
        // one.
        for (const int points : { 63, 64 }) {
            GridSettings settings = SideBySide;
            settings.iconSpacing = 1;
            settings.maximumIconSize = points;
            const GridLayout layout = LayoutSamples::forced(settings, { 2 }, 1, 0);
            for (const double ratio : Ratios) {
                const QImage icon = picture(ratio, points);
                const QImage image = drawn(layout, ratio, [&](GridPainter &painter, double) {
                    painter.drawCell(0, 0, {}, false, icon);
                    painter.drawCell(0, 1, {}, false, icon);
                });
                for (const int x : { 14, 14 + points + 5 }) {
                    const QPoint at(int(std::lround(x * ratio)), int(14 * ratio));
                    QCOMPARE(image.copy(QRect(at, icon.size())), icon);
                }
            }
        }
    }

    void aDimmedCellIsDimmedThroughout()
    {
        const auto middle = [](bool isHighlighted, const QImage &icon) {
            const CellLook look { false, isHighlighted, false };
            return drawn(oneCell(), 1, [&](GridPainter &painter, double) {
                painter.drawCell(0, 0, look, false, icon);
            }).pixelColor(46, 46);
        };
        // Opacities are rounded on the way.
        QVERIFY(std::abs(middle(false, picture(1)).alpha() - 38) <= 1);
        QVERIFY(std::abs(middle(true, {}).alpha() - 38) <= 1);
        QCOMPARE(middle(true, {}).rgb(), qRgb(255, 255, 255));
    }

    void aDecoratedCellMakesRoomForATriangle()
    {
        for (const GridSettings &settings : { Stacked, SideBySide, ReadAcross, ReadDown }) {
            const bool isOnTheLeft = settings.groupOrientation == 1
                || (settings.groupOrientation == 0 && settings.iconReadingOrder == 1);
            const GridLayout layout = oneCell(settings);
            const Drawing cell = [&](GridPainter &painter, double ratio) {
                painter.drawCell(0, 0, { true, false, true }, false, picture(ratio));
            };
            // Past the end of the triangle, where the picture alone is met.
            const auto squeezed = isOnTheLeft ? Qt::Horizontal : Qt::Vertical;
            const auto whole = isOnTheLeft ? Qt::Vertical : Qt::Horizontal;
            QCOMPARE(stretches(layout, squeezed, 76, cell), u"26+52, 39+78, 52+104"_s);
            QCOMPARE(stretches(layout, whole, 76, cell), u"14+64, 21+96, 28+128"_s);
            const QRectF strip = isOnTheLeft ? QRectF(12, 18, 14, 56) : QRectF(18, 12, 56, 14);
            QCOMPARE(corners(drawn(layout, 1.5, cell), strip), isOnTheLeft ? u"#./#." : u"##/..");
        }
    }

    void linesStandOnPixels()
    {
        const char *bracket = "80+1 113+1, 120+2 169+2, 160+2 226+2";
        const std::tuple<GridSettings, quint64, bool, const char *> rows[] {
            { SideBySide, 1, false, "97+1, 145+2, 194+2" },
            // The point above the middle, which is the one before it when counted from the top.
            { Stacked, 1, false, "96+1, 144+2, 192+2" },
            { Stacked, Coords::NotFound, true, "96+1, 144+2, 192+2" }, // moving elsewhere
            { SideBySide, 1, true, bracket }, { Stacked, 1, true, bracket },
            { SideBySide, 0, true, "11+1 97+1, 16+2 145+2, 22+2 194+2" },
            { SideBySide, 2, true, "97+1 182+1, 145+2 273+2, 194+2 364+2" },
            { Stacked, 0, true, "11+1 96+1, 16+2 144+2, 22+2 192+2" },
            { Stacked, 2, true, "96+1 182+1, 144+2 273+2, 192+2 364+2" }
        };
        for (const auto &[settings, spacer, isMoving, expected] : rows) {
            Coords selected;
            selected.spacer = spacer;
            const Drawing lines = [&, isMoving = isMoving](GridPainter &painter, double) {
                painter.drawSeparators(selected, isMoving);
            };
            const auto across = [&, settings = settings](double at) {
                const bool isStacked = settings.groupOrientation == 1;
                return stretches(
                    twoBands(settings), isStacked ? Qt::Vertical : Qt::Horizontal, at, lines);
            };
            // From margin to margin.
            QCOMPARE(across(11) + across(80), u", , , , "_s);
            QCOMPARE(across(12), QLatin1String(expected));
            QCOMPARE(across(79), QLatin1String(expected));
            QCOMPARE(stretches(oneCell(settings), Qt::Horizontal, 46, lines), u", , "_s);
        }
    }

    void bandEndsPointInwards()
    {
        // By margin: top, right, bottom, left, and one that there is not.
        const std::pair<GridSettings, const char *> ends[] = {
            { Stacked, "../.. .#/.# ../.. #./#. ../.." },
            { SideBySide, "##/.. ../.. ../## ../.. ../.." },
        };
        const Drawing upperEnd = [](GridPainter &painter, double) {
            painter.drawBandEnd({ Coords::NotFound, Coords::NotFound, 0, Coords::NotFound, 0 });
        };
        // A grid that knows no bands has no ends of them.
        QVERIFY(ink(drawn(oneCell(ReadAcross), 1, upperEnd)).isEmpty());
        QVERIFY(!ink(drawn(oneCell(SideBySide), 1, upperEnd)).isEmpty());
        for (const auto &[settings, expected] : ends) {
            const bool isStacked = settings.groupOrientation == 1;
            QStringList found;
            for (const quint64 margin : { 0, 1, 2, 3, 4 }) {
                const Coords selected { Coords::NotFound, Coords::NotFound, 0, Coords::NotFound,
                    margin };
                const QImage image = drawn(twoBands(settings), 1.5,
                    [&](GridPainter &painter, double) { painter.drawBandEnd(selected); });
                const int from = margin == 1 || margin == 2 ? 80 : 0;
                found +=
                    corners(image, isStacked ? QRectF(from, 12, 12, 68) : QRectF(12, from, 68, 12));
            }
            QCOMPARE(found.join(u' '), QLatin1String(expected));
        }
    }

    void scanTextStandsInTheMiddle()
    {
        constexpr double Ratio = 1.5;
        // Letters that stand on the baseline.
        const QString step = u"HHHH"_s;
        const auto text = [&](const QString &label) {
            return ink(drawn(twoBands(SideBySide), Ratio, [&](GridPainter &painter, double) {
                painter.drawScanText({ 0, 0, 194, 92 }, step, label);
            }));
        };
        const QRect one = text({});
        QCOMPARE(one.bottom() + 1, int(46 * Ratio));
        QVERIFY(std::abs(one.center().x() - 97 * Ratio) <= 2);
        QCOMPARE(text(step), one.adjusted(0, 0, 0, int(16 * Ratio)));
        const QRect longer = text(step.repeated(30));
        QVERIFY(longer.left() >= 12 * Ratio && longer.right() <= 182 * Ratio);
        QVERIFY(longer.width() > 150 * Ratio);
    }

    void preferencesGiveTheColors()
    {
        UserDefaults defaults;
        UserDefaults::setStandard(&defaults);
        GridColors::registerDefaults();
        const GridColors registered = GridColors::fromPreferences();
        QCOMPARE(registered.excludedOpacity, 0.15F);
        QCOMPARE(registered.winAlpha, 0.85F);
        QCOMPARE(registered.iconHighlightColor, QColor(Qt::red));
        QCOMPARE(registered.textColor, QColor(Qt::white));
        QVERIFY(registered.drawFilledIconHighlight && !registered.drawStrokedIconHighlight);

        defaults.setObject(u"windowAlpha"_s, 7.0);
        defaults.setObject(u"windowColor"_s, u"#ffff00"_s);
        defaults.setObject(u"iconHighlightColor"_s, u"reddish"_s);
        QTest::ignoreMessage(
            QtWarningMsg, "iconHighlightColor: \"reddish\" is no colour and is not used");
        const GridColors read = GridColors::fromPreferences();
        QCOMPARE(read.winAlpha, 1.0F);
        QCOMPARE(read.textColor, QColor(Qt::black));
        QCOMPARE(read.iconHighlightColor, QColor(Qt::red));
        // A window that is not seen has black text and no lines.
        defaults.removeObject(u"windowColor"_s);
        defaults.removeObject(u"iconHighlightColor"_s);
        defaults.setObject(u"windowAlpha"_s, 0.005);
        const GridColors unseen = GridColors::fromPreferences();
        QCOMPARE(unseen.textColor, QColor(Qt::black));
        const Drawing panel = [](GridPainter &painter, double) {
            painter.drawBackground({ 0, 0, 194, 92 });
            painter.drawSeparators({}, false);
        };
        const GridLayout layout = twoBands(SideBySide);
        QCOMPARE(stretches(layout, Qt::Horizontal, 46, panel, unseen), u", , "_s);
        const QImage seen = drawn(layout, 1, panel);
        QCOMPARE(seen.pixel(46, 46), qRgba(0, 0, 0, 77));
        QCOMPARE(seen.pixel(0, 0), 0U);
        QVERIFY(seen.pixelColor(97, 46).red() > 150);
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
            const auto shown = [&menu](
                                   QPalette::ColorRole role) { return menu.palette().color(role); };
            QCOMPARE(shown(QPalette::Window).lightness() < 110, isDark);
            for (const auto &[ground, text] : { std::pair(QPalette::Window, QPalette::Text),
                     std::pair(QPalette::Highlight, QPalette::HighlightedText) }) {
                QVERIFY(Contrast::ratio(shown(ground), shown(text)) >= Contrast::Enough);
            }
        }
        colors.winAlpha = 0;
        setMenuColors(menu, colors);
        QCOMPARE(menu.palette().color(QPalette::Window), QPalette().color(QPalette::Window));
    }
};

QTEST_MAIN(GridPainterTest)
#include "GridPainterTest.moc"
