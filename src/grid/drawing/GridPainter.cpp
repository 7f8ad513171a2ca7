#include "grid/drawing/GridPainter.h"

#include "grid/layout/GridLayout.h"
#include "support/Contrast.h"
#include "support/Geometry.h"
#include "support/Shapes.h"
#include "support/UserDefaults.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

namespace Key {

const QString excludedIconAlpha = QStringLiteral("excludedIconAlpha");
const QString drawFilledIconHighlight = QStringLiteral("drawFilledIconHighlight");
const QString drawStrokedIconHighlight = QStringLiteral("drawStrokedIconHighlight");
const QString iconHighlightColor = QStringLiteral("iconHighlightColor");
const QString markNewApplications = QStringLiteral("markNewApplications");
const QString windowAlpha = QStringLiteral("windowAlpha");
const QString windowColor = QStringLiteral("windowColor");

} // namespace Key

constexpr float BackgroundShare = 0.3F;
constexpr float SeparatorShare = 0.5F;
constexpr qreal BackgroundRadius = 9;
constexpr qreal HighlightRadius = 3;
constexpr qreal WholeCellRadius = 4;
constexpr qreal HighlightInset = 1;
constexpr qreal StrokeWidth = 2;
constexpr qreal LineWidth = 1;
constexpr qreal SeparatorInset = 12;
constexpr qreal TextSize = 10;
constexpr qreal TextSpacing = 16;
// The dot of a new application: a share of the icon's edge, within bounds in points; and its rim,
// a share of the dot.
constexpr qreal MarkShare = 0.2;
constexpr qreal LeastMark = 6;
constexpr qreal LargestMark = 20;
constexpr qreal RimShare = 0.13;
// Dark enough to be seen on what is light, where the rim is seen on all else; not the red by which
// running applications are told.
constexpr QColor MarkColor(0x0a, 0x62, 0xd0);
constexpr QColor RimColor(0xff, 0xff, 0xff);

// The dots of a start: a share of the icon's edge, within bounds in points.
constexpr qreal StartDotShare = 0.08;
constexpr qreal LeastStartDot = 2;
constexpr qreal LargestStartDot = 8;
constexpr QColor StartPlateColor(0, 0, 0, 0xc0);

QRectF inset(const QRectF &rect, qreal by)
{
    return rect.adjusted(by, by, -by, -by);
}

// A pixel less, so that what fills its cell does not run into what fills the next one.
QRectF apart(const QRectF &cell)
{
    return cell.adjusted(0, 0, -1, -1);
}

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

QColor dimmed(const QColor &color, float opacity)
{
    return withAlpha(color, color.alphaF() * opacity);
}

float opacityForKey(const QString &key)
{
    return std::clamp(UserDefaults::standard().floatForKey(key), 0.0F, 1.0F);
}

// Where in its cell a dragged icon would go: on the left, or else on top. Bands say so, and in a
// grid without bands the way it is read.
bool isInsertedOnTheLeft(const GridSettings &settings)
{
    return settings.groupOrientation == 0 ? settings.iconReadingOrder != 2
                                          : settings.groupOrientation == 1;
}

} // namespace

QStringList GridColors::keys()
{
    return { Key::excludedIconAlpha, Key::drawFilledIconHighlight, Key::drawStrokedIconHighlight,
        Key::iconHighlightColor, Key::markNewApplications, Key::windowAlpha, Key::windowColor };
}

void GridColors::registerDefaults()
{
    const GridColors colors;
    UserDefaults::standard().registerDefaults({
        // As doubles, so that they read as they are written here.
        { Key::excludedIconAlpha, 0.15 },
        { Key::windowAlpha, 0.85 },
        { Key::drawFilledIconHighlight, colors.drawFilledIconHighlight },
        { Key::drawStrokedIconHighlight, colors.drawStrokedIconHighlight },
        { Key::iconHighlightColor, colorText(colors.iconHighlightColor) },
        { Key::markNewApplications, colors.markNewApplications },
        { Key::windowColor, colorText(colors.winColor) },
    });
}

GridColors GridColors::fromPreferences()
{
    const UserDefaults &defaults = UserDefaults::standard();
    GridColors colors;
    colors.excludedOpacity = opacityForKey(Key::excludedIconAlpha);
    colors.drawFilledIconHighlight = defaults.boolForKey(Key::drawFilledIconHighlight);
    colors.drawStrokedIconHighlight = defaults.boolForKey(Key::drawStrokedIconHighlight);
    colors.iconHighlightColor = defaults.colorForKey(Key::iconHighlightColor);
    colors.markNewApplications = defaults.boolForKey(Key::markNewApplications);
    colors.winAlpha = opacityForKey(Key::windowAlpha);
    colors.winColor = defaults.colorForKey(Key::windowColor);
    colors.textColor =
        colors.isWindowSeen() ? contrastingBlackOrWhite(colors.winColor) : QColor(Qt::black);
    return colors;
}

QColor GridColors::textPlate() const
{
    const Backdrop background = Backdrop()
                                    .with(withAlpha(winColor, winAlpha))
                                    .with(withAlpha(winColor, winAlpha * BackgroundShare));
    // A text on a window that is not to be seen may have the colour of that window.
    const QColor color = contrastingBlackOrWhite(winColor) == textColor
        ? winColor
        : contrastingBlackOrWhite(textColor);
    return background.strengthened(withAlpha(color, 0), textColor);
}

GridPainter::GridPainter(
    QPainter &painter, const GridLayout &layout, const GridColors &colors, qreal viewHeight)
    : _painter(painter)
    , _layout(layout)
    , _colors(colors)
    , _viewHeight(viewHeight)
    , _toDevice(painter.deviceTransform())
{
    _painter.save();
    // Undoes the scale of the device as well, so that a picture is copied instead of resampled.
    _painter.setWorldTransform(_toDevice.inverted() * _painter.worldTransform());
    _painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

GridPainter::~GridPainter()
{
    _painter.restore();
}

QRectF GridPainter::onDevice(const QRectF &rect) const
{
    return _toDevice.mapRect(Geometry::flipped(rect, _viewHeight));
}

QRectF GridPainter::onPixels(const QRectF &rect) const
{
    const QRectF exact = onDevice(rect);
    const QPointF topLeft(std::round(exact.left()), std::round(exact.top()));
    return { topLeft,
        QSizeF(std::max(std::round(exact.right()) - topLeft.x(), 1.0),
            std::max(std::round(exact.bottom()) - topLeft.y(), 1.0)) };
}

QRectF GridPainter::onPixelsOfEqualExtent(const QRectF &rect) const
{
    const QSizeF size(pixels(rect.width()), pixels(rect.height()));
    const QPointF middle = onDevice(rect).center();
    return { QPointF(std::round(middle.x() - size.width() / 2),
                 std::round(middle.y() - size.height() / 2)),
        size };
}

qreal GridPainter::pixels(qreal length) const
{
    return std::max(std::round(length * _toDevice.m11()), 1.0);
}

void GridPainter::drawBackground(const QRectF &bounds)
{
    _painter.fillPath(roundedRectanglePath(onPixels(bounds), BackgroundRadius * _toDevice.m11()),
        withAlpha(_colors.winColor, _colors.winAlpha * BackgroundShare));
}

void GridPainter::drawCell(
    quint64 row, quint64 column, const CellLook &look, bool isRunning, const QImage &picture)
{
    if (!_layout.isValidRow(row, column) || _layout.cellAt(row, column).rect.isEmpty()) {
        return;
    }
    const auto padding = qreal(_layout.cellPaddingForIconWidth(_layout.iconWidth()));
    const float alpha = look.isOpaque ? 1 : _colors.excludedOpacity;
    QRectF cell = _layout.cellAt(row, column).rect;
    QRectF icon = inset(cell, padding);
    const qreal room = std::trunc(icon.width() / 5);
    const bool isOnTheLeft = isInsertedOnTheLeft(_layout.settings());
    QRectF strip = cell;
    if (look.isDecorated && isOnTheLeft) {
        strip.setWidth(padding + room);
        strip.adjust(0, room / 2, 0, -room / 2);
        cell.adjust(room, 0, 0, 0);
        icon.adjust(room, 0, 0, 0);
    } else if (look.isDecorated) {
        // The upper edges, y growing upwards.
        strip.adjust(room / 2, strip.height() - padding - room, -room / 2, 0);
        cell.adjust(0, 0, 0, -room);
        icon.adjust(0, 0, 0, -room);
    }

    if (look.isHighlighted) {
        drawHighlight(
            cell, dimmed(isRunning ? _colors.iconHighlightColor : _colors.textColor, alpha));
    }
    if (look.isDecorated) {
        _painter.fillPath(
            trianglePath(onPixels(strip), isOnTheLeft ? Pointing::Right : Pointing::Down),
            dimmed(_colors.textColor, alpha));
    }
    if (!picture.isNull()) {
        _painter.setOpacity(alpha * look.strength);
        const QRectF pictured = onPixelsOfEqualExtent(icon);
        _painter.drawImage(pictured, picture);
        if (look.isMarked) {
            drawMark(pictured);
        }
        if (look.hasStartMark) {
            drawStartMark(pictured);
        }
        _painter.setOpacity(1);
    }
}

void GridPainter::drawMark(const QRectF &icon)
{
    const qreal edge = std::max(icon.width(), icon.height());
    const qreal ratio = _toDevice.m11();
    const qreal size =
        std::round(std::clamp(edge * MarkShare, LeastMark * ratio, LargestMark * ratio));
    const QRectF dot(icon.right() - size, icon.top(), size, size);
    const qreal rim = std::max(std::round(size * RimShare), 1.0);
    _painter.setPen(Qt::NoPen);
    _painter.setBrush(RimColor);
    _painter.drawEllipse(dot);
    _painter.setBrush(MarkColor);
    _painter.drawEllipse(inset(dot, rim));
}

void GridPainter::drawStartMark(const QRectF &icon)
{
    constexpr int dots = 3;
    const qreal ratio = _toDevice.m11();
    const qreal size = std::round(
        std::clamp(icon.width() * StartDotShare, LeastStartDot * ratio, LargestStartDot * ratio));
    // Dots, and as much between them and round them.
    const QSizeF plate((2 * dots + 1) * size, 3 * size);
    const QPointF corner(
        std::round(icon.center().x() - plate.width() / 2), icon.bottom() - plate.height());
    _painter.setPen(Qt::NoPen);
    _painter.fillPath(capsulePath({ corner, plate }), StartPlateColor);
    _painter.setBrush(RimColor);
    for (int i = 0; i < dots; ++i) {
        _painter.drawEllipse(
            QRectF(corner + QPointF((2 * i + 1) * size, size), QSizeF(size, size)));
    }
}

void GridPainter::drawHighlight(const QRectF &cell, const QColor &color)
{
    const qreal ratio = _toDevice.m11();
    // Measured in whole pixels from the edges of the cell, so that it is as far from each of them.
    if (_colors.drawFilledIconHighlight && _colors.drawStrokedIconHighlight) {
        _painter.fillPath(
            roundedRectanglePath(apart(onPixels(cell)), WholeCellRadius * ratio), color);
    } else if (_colors.drawFilledIconHighlight) {
        _painter.fillPath(roundedRectanglePath(inset(onPixels(cell), pixels(HighlightInset)),
                              HighlightRadius * ratio),
            color);
    } else if (_colors.drawStrokedIconHighlight) {
        drawOutline(cell, color);
    }
}

void GridPainter::drawOutline(const QRectF &cell, const QColor &color)
{
    const qreal width = pixels(StrokeWidth);
    _painter.strokePath(roundedRectanglePath(inset(apart(onPixels(cell)), width / 2),
                            HighlightRadius * _toDevice.m11()),
        QPen(color, width));
}

void GridPainter::drawFocus(quint64 row, quint64 column)
{
    if (_layout.isValidRow(row, column)) {
        drawOutline(_layout.cellAt(row, column).rect, _colors.textColor);
    }
}

void GridPainter::drawSeparators(const Coords &selected, bool isMoving)
{
    const auto &spacers = _layout.bunchSpacingRects();
    for (size_t i = 0; i < spacers.size(); ++i) {
        const QRectF &spacer = spacers[i];
        // Lists without bands have spacers that lie nowhere.
        if (spacer.isEmpty()) {
            continue;
        }
        if (isMoving && i == selected.spacer) {
            drawBracket(i);
        } else if (i > 0 && i + 1 < spacers.size()) {
            drawLine(spacer,
                std::floor(_layout.isStacked() ? spacer.y() + spacer.height() / 2
                                               : spacer.x() + spacer.width() / 2));
        }
    }
}

// A line along each band that the spacer touches.
void GridPainter::drawBracket(size_t spacer)
{
    const QRectF &rect = _layout.bunchSpacingRects()[spacer];
    const qreal low = _layout.isStacked() ? rect.y() : rect.x();
    const qreal high = low + (_layout.isStacked() ? rect.height() : rect.width());
    const bool isFirst = spacer == 0;
    const bool isLast = spacer + 1 == _layout.bunchSpacingRects().size();
    // The first band begins where the first spacer ends, which is its high edge when it lies to the
    // left of the band and its low edge when it lies on top.
    if (_layout.isStacked() ? !isLast : !isFirst) {
        drawLine(rect, std::floor(low));
    }
    if (_layout.isStacked() ? !isFirst : !isLast) {
        drawLine(rect, std::floor(high) - LineWidth);
    }
}

void GridPainter::drawLine(const QRectF &spacer, qreal at)
{
    const QRectF line = _layout.isStacked()
        ? QRectF(spacer.x() + SeparatorInset, at, spacer.width() - 2 * SeparatorInset, LineWidth)
        : QRectF(at, spacer.y() + SeparatorInset, LineWidth, spacer.height() - 2 * SeparatorInset);
    const float alpha = _colors.isWindowSeen() ? _colors.winAlpha * SeparatorShare : 0;
    _painter.fillRect(onPixelsOfEqualExtent(line), withAlpha(_colors.textColor, alpha));
}

void GridPainter::drawBandEnd(const Coords &selected)
{
    enum Margin : quint64 { Top, Right, Bottom, Left };
    const bool hasBands = _layout.settings().groupOrientation != 0;
    const bool isAtAnEnd =
        _layout.isStacked() == (selected.margin == Left || selected.margin == Right);
    const QRectF end = _layout.bandEnd(selected);
    if (!hasBands || !isAtAnEnd || end.isEmpty()) {
        return;
    }
    // Inwards, at the band.
    constexpr std::array inwards { Pointing::Down, Pointing::Left, Pointing::Up, Pointing::Right };
    _painter.fillPath(trianglePath(onPixels(end), inwards[selected.margin]), _colors.textColor);
}

void GridPainter::drawScanText(const QRectF &bounds, const QString &step, const QString &label)
{
    const qreal baseline = bounds.y() + std::floor(bounds.height() / 2);
    drawTextLine(step, bounds, baseline);
    drawTextLine(label, bounds, baseline - TextSpacing);
}

void GridPainter::drawTextLine(const QString &text, const QRectF &bounds, qreal baseline)
{
    const QRectF line =
        onDevice({ bounds.x() + SeparatorInset, baseline, bounds.width() - 2 * SeparatorInset, 0 });
    QFont font = _painter.font();
    font.setPixelSize(int(pixels(TextSize)));
    _painter.setFont(font);
    _painter.setPen(_colors.textColor);
    const QFontMetricsF metrics(font, _painter.device());
    const QString shown = metrics.elidedText(text, Qt::ElideMiddle, line.width());
    const QPointF start(
        std::round(line.center().x() - metrics.horizontalAdvance(shown) / 2), std::round(line.y()));
    const QRectF plate(start.x(), start.y() - metrics.ascent(), metrics.horizontalAdvance(shown),
        metrics.height());
    if (!shown.isEmpty()) {
        _painter.fillPath(
            capsulePath(plate.adjusted(-metrics.height() / 2, 0, metrics.height() / 2, 0)),
            _colors.textPlate());
    }
    _painter.drawText(start, shown);
}
