#include "icons/SpectrumIcon.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr double PieShare = 0.8;
constexpr double RingShare = 0.1;
constexpr double FullCircle = 360.0;
constexpr double Upwards = 90.0;

void drawPie(QPainter &painter, const SortedColors &colors, double size)
{
    quint64 total = 0;
    for (qsizetype i = 1; i < colors.size(); ++i) {
        total += colors[i].count;
    }
    if (total == 0) {
        return;
    }
    const double radius = PieShare * size * 0.5 - 1;
    const QRectF circle(size / 2 - radius, size / 2 - radius, 2 * radius, 2 * radius);
    const auto sweep = [&](qsizetype i) {
        return double(colors[i].count) / double(total) * FullCircle;
    };
    double left = FullCircle;
    double start = Upwards - sweep(1) / 2;
    // Each slice is drawn with all that follow it under the next one: slices side by side would
    // leave a hairline between them.
    for (qsizetype i = 1; i < colors.size(); ++i) {
        QPainterPath slice;
        if (i == 1) {
            slice.addEllipse(circle);
        } else {
            slice.moveTo(circle.center());
            slice.arcTo(circle, start, left);
        }
        painter.fillPath(slice, colors[i].color());
        start += sweep(i);
        left -= sweep(i);
    }
}

void drawRing(QPainter &painter, const QColor &color, double size)
{
    const double width = RingShare * size;
    QPainterPath ring;
    ring.setFillRule(Qt::OddEvenFill);
    ring.addEllipse(QRectF(0, 0, size, size));
    ring.addEllipse(QRectF(width, width, size - 2 * width, size - 2 * width));
    painter.fillPath(ring, color);
}

} // namespace

QImage spectrumIcon(const SortedColors &colors, int size)
{
    if (colors.isEmpty() || size <= 0) {
        return {};
    }
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawPie(painter, colors, size);
    drawRing(painter, colors.first().color(), size);
    return picture;
}
