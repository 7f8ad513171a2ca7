#include "support/Shapes.h"

#include "support/Contrast.h"

#include <algorithm>

QPainterPath trianglePath(const QRectF &rect, Pointing pointing)
{
    QPainterPath path;
    if (rect.isEmpty()) {
        return path;
    }
    const QPointF middle = rect.center();
    QPolygonF corners;
    switch (pointing) {
    case Pointing::Up:
        corners = { rect.bottomLeft(), { middle.x(), rect.top() }, rect.bottomRight() };
        break;
    case Pointing::Down:
        corners = { rect.topLeft(), { middle.x(), rect.bottom() }, rect.topRight() };
        break;
    case Pointing::Left:
        corners = { rect.topRight(), { rect.left(), middle.y() }, rect.bottomRight() };
        break;
    case Pointing::Right:
        corners = { rect.topLeft(), { rect.right(), middle.y() }, rect.bottomLeft() };
        break;
    }
    path.addPolygon(corners);
    path.closeSubpath();
    return path;
}

QPainterPath roundedRectanglePath(const QRectF &rect, qreal radius)
{
    QPainterPath path;
    if (!rect.isEmpty()) {
        // Qt would bound each way on its own and leave ellipses in the corners.
        const qreal bounded = std::min(radius, std::min(rect.width(), rect.height()) / 2);
        path.addRoundedRect(rect, bounded, bounded);
    }
    return path;
}

QPainterPath capsulePath(const QRectF &rect)
{
    return roundedRectanglePath(rect, std::min(rect.width(), rect.height()) / 2);
}

QColor contrastingBlackOrWhite(const QColor &color)
{
    return Contrast::ratio(color, Qt::black) > Contrast::ratio(color, Qt::white) ? Qt::black
                                                                                 : Qt::white;
}

QColor colorFromText(const QString &text)
{
    constexpr qsizetype opaqueSize = 7;
    constexpr qsizetype fullSize = 9;
    if (!text.startsWith(QLatin1Char('#'))
        || (text.size() != opaqueSize && text.size() != fullSize)) {
        return {};
    }
    // Qt has the opacity in front.
    const QString argb = text.mid(opaqueSize) + text.mid(1, opaqueSize - 1);
    return QColor::fromString(QLatin1Char('#') + argb);
}

QString colorText(const QColor &color)
{
    const QString argb = color.name(QColor::HexArgb);
    return QLatin1Char('#') + argb.mid(3) + argb.mid(1, 2);
}
