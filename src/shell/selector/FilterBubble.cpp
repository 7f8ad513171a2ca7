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
constexpr int CaptionSize = 24;
constexpr int Inset = 20;
constexpr qreal CornerRadius = 24;
constexpr qreal ShadowDrop = 2;

constexpr qreal ShadowAlpha = 0.6;
// The shadow is drawn so much smaller and then stretched, which blurs it.
constexpr int ShadowShrinking = 4;

QFont fontOfSize(int size)
{
    QFont font;
    font.setPixelSize(size);
    return font;
}

} // namespace

void FilterBubble::setText(const QString &text, const QSize &viewSize, const QString &caption)
{
    const QFontMetricsF metrics(fontOfSize(TextSize));
    const QFontMetricsF captionMetrics(fontOfSize(CaptionSize));
    const qreal widest = std::max(0, viewSize.width() - 2 * Inset);
    const QString shown = metrics.elidedText(text, Qt::ElideLeft, widest);
    const QString shownCaption = captionMetrics.elidedText(caption, Qt::ElideRight, widest);
    QRect rect;
    if (!shown.isEmpty()) {
        QRectF bounds(0, 0, metrics.horizontalAdvance(shown), metrics.height());
        if (!shownCaption.isEmpty()) {
            const qreal width = captionMetrics.horizontalAdvance(shownCaption);
            bounds.setWidth(std::max(bounds.width(), width));
            bounds.setHeight(bounds.height() + captionMetrics.height());
        }
        bounds.moveCenter(QRectF(QPointF(), QSizeF(viewSize)).center());
        rect = bounds.adjusted(-Inset, -Inset, Inset, Inset).toAlignedRect();
    }
    if (shown != _shownText || shownCaption != _shownCaption || rect.size() != _rect.size()) {
        _picture = {};
    }
    _shownText = shown;
    _shownCaption = shownCaption;
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
    const QImage picture = shadow();
    painter.setOpacity(ShadowAlpha);
    painter.drawImage(
        QRectF(QPointF(0, ShadowDrop), QSizeF(picture.size() * ShadowShrinking)), picture);
    painter.setOpacity(1);
    drawTexts(painter, bounds, _foreground);
}

void FilterBubble::drawTexts(QPainter &painter, const QRectF &rect, const QColor &color) const
{
    constexpr int flags = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip;
    QRectF textRect = rect;
    painter.setPen(color);
    if (!_shownCaption.isEmpty()) {
        const QFont font = fontOfSize(CaptionSize);
        QRectF captionRect = rect.adjusted(0, 0, 0, -Inset);
        captionRect.setTop(captionRect.bottom() - QFontMetricsF(font).height());
        textRect = QRectF(
            rect.left(), rect.top() + Inset, rect.width(), captionRect.top() - rect.top() - Inset);
        painter.setFont(font);
        painter.drawText(captionRect, flags, _shownCaption);
    }
    painter.setFont(fontOfSize(TextSize));
    painter.drawText(textRect, flags, _shownText);
}

QImage FilterBubble::shadow() const
{
    const QSize size = _rect.size();
    QImage picture((size + QSize(ShadowShrinking - 1, ShadowShrinking - 1)) / ShadowShrinking,
        QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.scale(1.0 / ShadowShrinking, 1.0 / ShadowShrinking);
    drawTexts(painter, QRectF(QPointF(), QSizeF(size)), contrastingBlackOrWhite(_foreground));
    return picture;
}
