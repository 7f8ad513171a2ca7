#include "grid/drawing/DisappearingCursor.h"

#include "grid/drawing/PoofEffect.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>

namespace {

// In points.
constexpr int Size = 32;
// So close to the corner because the X server is told these figures as pixels, whatever the ratio:
// what points is then off by half a point at most, at a ratio of 2 or less.
constexpr QPointF Tip(1, 1);
constexpr QPointF PuffCenter(21.5, 21.5);
constexpr qreal PuffRadius = 11.5;
// While the puff is dense.
constexpr qreal PuffMoment = 0.4;

// An arrow that points up and to the left, clockwise from its tip at the origin.
QPainterPath arrow()
{
    QPainterPath path;
    path.addPolygon(QPolygonF({ { 0, 0 }, { 11.5, 11 }, { 6.8, 11.4 }, { 9.6, 17.4 }, { 7, 18.6 },
        { 4.2, 12.5 }, { 0, 16 } }));
    path.closeSubpath();
    return path;
}

} // namespace

QCursor disappearingItemCursor(qreal devicePixelRatio)
{
    const int edge = int(std::ceil(Size * devicePixelRatio));
    QPixmap picture(edge, edge);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    PoofEffect::draw(painter, PuffCenter, PuffRadius, PuffMoment);
    painter.translate(Tip);
    // The outline goes round the arrow, whose stem would be covered by one upon its edge.
    painter.strokePath(arrow(), QPen(Qt::white, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(arrow(), Qt::black);
    painter.end();
    return QCursor(picture, int(Tip.x()), int(Tip.y()));
}

QCursor disappearingItemCursor()
{
    return disappearingItemCursor(qApp ? qApp->devicePixelRatio() : 1);
}
