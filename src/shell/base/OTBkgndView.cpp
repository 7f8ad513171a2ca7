#include "shell/base/OTBkgndView.h"

#include "grid/drawing/GridPainter.h"
#include "support/Contrast.h"
#include "support/Shapes.h"
#include "support/UserDefaults.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace {

namespace Key {

const QString windowAlpha = QStringLiteral("windowAlpha");
const QString windowColor = QStringLiteral("windowColor");
const QString windowBorderColor = QStringLiteral("windowBorderColor");
const QString drawWindowBorder = QStringLiteral("drawWindowBorder");

} // namespace Key

// Of the edge of a window without a border, which is barely to be told from its colour.
constexpr float EdgeShare = 0.14F;

// What shows through the colour of the window where the desktop cannot.
constexpr QRgb Base = qRgb(222, 224, 228);

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

// A background in device pixels: four squares that hold the corners, and the rest, which has no
// edge that would have to be smoothed.
class Background final
{
public:
    Background(QPainter &painter, const QRect &bounds, qreal radius, const BackgroundLook &look)
        : _painter(painter)
        , _look(look)
        , _bounds(bounds)
        , _radius(std::min(radius, std::min(bounds.width(), bounds.height()) / 2.0))
    {
        // They do not overlap, or a corner would be smoothed twice.
        const auto extent = int(std::ceil(_radius));
        const int left = std::min(extent, bounds.width() / 2);
        const int top = std::min(extent, bounds.height() / 2);
        _middle = bounds.adjusted(left, top, -std::min(extent, bounds.width() - left),
            -std::min(extent, bounds.height() - top));
    }

    void fill(const QRegion &region) const
    {
        _painter.setCompositionMode(QPainter::CompositionMode_Source);
        if (!_look.isBlended) {
            fillRects({ _bounds }, region,
                Contrast::blended(withAlpha(_look.winColor, _look.winAlpha), QColor(Base)));
            return;
        }
        const QColor color = withAlpha(_look.winColor, _look.winAlpha);
        fillRects({ rows(_middle.y(), _middle.height()), above(_middle.y() - _bounds.y()),
                      below(_bounds.bottom() - _middle.bottom()) },
            region, color);
        fillCorners(region, color,
            [this](const QRectF &square) { return roundedRectanglePath(square, _radius); });
    }

    // Along the inside of the edges, as if a line of twice the width were clipped there.
    void drawBorder(const QRegion &region, int width, const QColor &color) const
    {
        _painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        const QRect sides = rows(_middle.y(), _middle.height());
        fillRects({ above(width), below(width), { sides.topLeft(), QSize(width, sides.height()) },
                      sides.adjusted(sides.width() - width, 0, 0, 0) },
            region, color);
        fillCorners(region, color, [this, width](const QRectF &square) {
            QPainterPath ring = roundedRectanglePath(square, _radius);
            ring.addPath(roundedRectanglePath(
                square.adjusted(width, width, -width, -width), std::max(_radius - width, 0.0)));
            return ring;
        });
    }

private:
    QRect rows(int y, int height) const { return { _bounds.x(), y, _bounds.width(), height }; }
    // Between the corners, at the upper and at the lower edge.
    QRect above(int height) const { return { _middle.x(), _bounds.y(), _middle.width(), height }; }
    QRect below(int height) const
    {
        return { _middle.x(), _bounds.bottom() + 1 - height, _middle.width(), height };
    }

    void fillRects(
        std::initializer_list<QRect> rects, const QRegion &region, const QColor &color) const
    {
        for (const QRect &rect : rects) {
            for (const QRect &part : region) {
                if (rect.intersects(part)) {
                    _painter.fillRect(rect & part, color);
                }
            }
        }
    }

    // The shape is asked for in squares that have but one corner in common with the background, as
    // there is much less of them to smooth.
    template <typename Shape>
    void fillCorners(const QRegion &region, const QColor &color, const Shape &shape) const
    {
        const QSize left(_middle.x() - _bounds.x(), 0);
        const QSize right(_bounds.right() - _middle.right(), 0);
        const QSize upper(0, _middle.y() - _bounds.y());
        const QSize lower(0, _bounds.bottom() - _middle.bottom());
        const auto fillCorner = [&](const QSize &size, auto moveTo, const QPoint &point) {
            QRect corner(QPoint(), size);
            (corner.*moveTo)(point);
            const QRegion wanted = region & corner;
            if (wanted.isEmpty()) {
                return;
            }
            const auto extent = 2 * int(std::ceil(_radius));
            QRect square(0, 0, extent, extent);
            (square.*moveTo)(point);
            _painter.save();
            _painter.setClipRegion(wanted, Qt::IntersectClip);
            _painter.fillPath(shape(square), color);
            _painter.restore();
        };
        fillCorner(left + upper, &QRect::moveTopLeft, _bounds.topLeft());
        fillCorner(right + upper, &QRect::moveTopRight, _bounds.topRight());
        fillCorner(left + lower, &QRect::moveBottomLeft, _bounds.bottomLeft());
        fillCorner(right + lower, &QRect::moveBottomRight, _bounds.bottomRight());
    }

    QPainter &_painter;
    const BackgroundLook &_look;
    QRect _bounds;
    qreal _radius;
    // Without the rows and the columns of the corners.
    QRect _middle;
};

} // namespace

OTBkgndView::OTBkgndView(QWidget *parent)
    : QWidget(parent)
    , userDefaults(UserDefaults::standard())
{
    setIsBlended(true);
    updateColors();
    connect(&userDefaults, &UserDefaults::changed, this, [this](const QString &key) {
        if (keys().contains(key)) {
            updateColors();
        }
    });
}

QStringList OTBkgndView::keys()
{
    return { Key::windowAlpha, Key::windowColor, Key::windowBorderColor, Key::drawWindowBorder };
}

void OTBkgndView::registerDefaults()
{
    const BackgroundLook look;
    UserDefaults::standard().registerDefaults({
        { Key::windowBorderColor, colorText(look.borderColor) },
        { Key::drawWindowBorder, look.drawWindowBorder },
    });
}

void OTBkgndView::setIsBlended(bool isBlended)
{
    isBlended_ = isBlended;
    setAttribute(Qt::WA_OpaquePaintEvent, !isBlended);
    update();
}

void OTBkgndView::updateColors()
{
    const BackgroundLook before = look();
    const GridColors colors = GridColors::fromPreferences();
    winAlpha_ = colors.winAlpha;
    winColor_ = colors.winColor;
    drawWindowBorder_ = userDefaults.boolForKey(Key::drawWindowBorder);
    borderColor_ = userDefaults.colorForKey(Key::windowBorderColor);
    if (look() != before) {
        update();
    }
}

BackgroundLook OTBkgndView::look() const
{
    return { winAlpha_, winColor_, borderColor_, drawWindowBorder_, borderWidth_, isBlended_ };
}

QRegion OTBkgndView::roundedMask(const QSize &size)
{
    const qreal radius = std::min(CornerRadius, std::min(size.width(), size.height()) / 2.0);
    const int curved = std::min(int(std::ceil(radius)), size.height() / 2);
    QRegion mask(0, curved, size.width(), size.height() - 2 * curved);
    for (int y = 0; y < curved; ++y) {
        // From the middle of the row to where the curve ends, on either side.
        const qreal rise = radius - (y + 0.5);
        const auto cut = int(std::lround(radius - std::sqrt(radius * radius - rise * rise)));
        const QRect row(cut, y, size.width() - 2 * cut, 1);
        mask += row;
        mask += row.translated(0, size.height() - 1 - 2 * y);
    }
    return mask;
}

void OTBkgndView::drawBackground(
    QPainter &painter, const QRectF &rect, const BackgroundLook &look, const QRegion &region)
{
    const QTransform toDevice = painter.deviceTransform();
    const qreal ratio = toDevice.m11();
    const QRectF exact = toDevice.mapRect(rect);
    const QRect bounds(QPoint(int(std::lround(exact.left())), int(std::lround(exact.top()))),
        QPoint(int(std::lround(exact.right())) - 1, int(std::lround(exact.bottom())) - 1));
    if (bounds.isEmpty()) {
        return;
    }
    QRegion wanted;
    for (const QRect &part : region) {
        wanted += toDevice.mapRect(QRectF(part)).toAlignedRect();
    }
    wanted &= bounds;

    painter.save();
    // Undoes the scale of the device as well.
    painter.setWorldTransform(toDevice.inverted() * painter.worldTransform());
    painter.setRenderHint(QPainter::Antialiasing);
    const Background background(painter, bounds, CornerRadius * ratio, look);
    background.fill(wanted);
    if (look.drawWindowBorder) {
        background.drawBorder(wanted,
            std::max(int(std::lround(qreal(look.borderWidth) * ratio)), 1),
            withAlpha(look.borderColor, look.winAlpha));
    } else if (look.winAlpha >= GridColors::leastVisibleAlpha) {
        // Sets the window off from a desktop of its own colour.
        background.drawBorder(wanted, 1,
            withAlpha(contrastingBlackOrWhite(look.winColor), look.winAlpha * EdgeShare));
    }
    painter.restore();
}

QImage OTBkgndView::backgroundColorPatternImageOfSize(const QSizeF &size, qreal ratio) const
{
    QImage image((size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return image;
    }
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF rect(QPointF(), size);
    drawBackground(painter, rect, look(), rect.toAlignedRect());
    return image;
}

void OTBkgndView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    drawBackground(painter, rect(), look(), event->region());
}
