#include "shell/selector/FilterBubble.h"

#include "support/Shapes.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

// In points.
constexpr int TextSize = 72;
constexpr int Inset = 20;
constexpr qreal CornerRadius = 24;
constexpr qreal ShadowDrop = 2;

constexpr qreal ShadowAlpha = 0.6;
// The shadow is drawn so much smaller and then stretched, which blurs it.
constexpr int ShadowShrinking = 4;

QFont keyFont()
{
    QFont font;
    font.setPixelSize(TextSize);
    return font;
}

void drawText(QPainter &painter, const QRectF &rect, const QString &text, const QColor &color)
{
    painter.setFont(keyFont());
    painter.setPen(color);
    painter.drawText(rect, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, text);
}

QImage shadowOf(const QString &text, const QSize &size, const QColor &color)
{
    QImage shadow((size + QSize(ShadowShrinking - 1, ShadowShrinking - 1)) / ShadowShrinking,
        QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    painter.scale(1.0 / ShadowShrinking, 1.0 / ShadowShrinking);
    drawText(painter, QRectF(QPointF(), QSizeF(size)), text, color);
    return shadow;
}

} // namespace

void FilterBubble::setText(const QString &text, const QSize &viewSize)
{
    const QFontMetricsF metrics(keyFont());
    const qreal widest = std::max(0, viewSize.width() - 2 * Inset);
    const QString shown = metrics.elidedText(text, Qt::ElideLeft, widest);
    QRect rect;
    if (!shown.isEmpty()) {
        QRectF bounds(0, 0, metrics.horizontalAdvance(shown), metrics.height());
        bounds.moveCenter(QRectF(QPointF(), QSizeF(viewSize)).center());
        rect = bounds.adjusted(-Inset, -Inset, Inset, Inset).toAlignedRect();
    }
    if (shown != _shownText || rect.size() != _rect.size()) {
        _picture = {};
    }
    _shownText = shown;
    _rect = rect;
}

void FilterBubble::setColors(const QColor &foreground, const QColor &plate)
{
    _foreground = foreground;
    _plate = plate;
    _picture = {};
}

void FilterBubble::draw(QPainter &painter, qreal alpha)
{
    if (isEmpty()) {
        return;
    }
    const qreal ratio = painter.deviceTransform().m11();
    if (_picture.isNull() || _picture.devicePixelRatio() != ratio) {
        makePicture(ratio);
    }
    const qreal before = painter.opacity();
    painter.setOpacity(before * alpha);
    painter.drawPixmap(_rect.topLeft(), _picture);
    painter.setOpacity(before);
}

void FilterBubble::makePicture(qreal ratio)
{
    _picture = QPixmap((QSizeF(_rect.size()) * ratio).toSize());
    _picture.setDevicePixelRatio(ratio);
    _picture.fill(Qt::transparent);
    QPainter painter(&_picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF bounds(QPointF(), QSizeF(_rect.size()));
    painter.fillPath(roundedRectanglePath(bounds, CornerRadius), _plate);

    // What sets the letters off from whatever lies behind them.
    const QImage shadow = shadowOf(_shownText, _rect.size(), contrastingBlackOrWhite(_foreground));
    painter.setOpacity(ShadowAlpha);
    painter.drawImage(
        QRectF(QPointF(0, ShadowDrop), QSizeF(shadow.size() * ShadowShrinking)), shadow);
    painter.setOpacity(1);
    drawText(painter, bounds, _shownText, _foreground);
}
