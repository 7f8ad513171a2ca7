#include "commands/ContactSheet.h"

#include "icons/SpectrumIcon.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int IconSize = 64;
constexpr int Gap = 8;
constexpr int Margin = 16;
constexpr int CaptionSize = 11;
constexpr int CaptionHeight = 2 * (CaptionSize + 4);
constexpr QSize CellSize(2 * IconSize + Gap + Margin, IconSize + Gap + CaptionHeight + Margin);
// The shape that a sheet of many icons comes near to, width by height.
constexpr double Aspect = 1.6;

// Neutral, and neither as light nor as dark as most icons.
constexpr QRgb Background = qRgb(0x5c, 0x5c, 0x5c);
constexpr QRgb TitleColor = qRgb(0xff, 0xff, 0xff);
constexpr QRgb KeyColor = qRgb(0xc8, 0xc8, 0xc8);

using Order = std::vector<const MeasuredFile *>;

Order orderByColor(const std::vector<MeasuredFile> &files)
{
    Order order;
    for (const MeasuredFile &file : files) {
        if (file.error.isEmpty()) {
            order.push_back(&file);
        }
    }
    std::stable_sort(
        order.begin(), order.end(), [](const MeasuredFile *one, const MeasuredFile *other) {
            return one->key.colorSortValue < other->key.colorSortValue;
        });
    return order;
}

QRect fitted(const QSize &picture, const QRect &place)
{
    QRect fit({}, picture.scaled(place.size(), Qt::KeepAspectRatio));
    fit.moveCenter(place.center());
    return fit;
}

void drawCell(QPainter &painter, const MeasuredFile &file, const QPoint &corner)
{
    const QRect icon(corner, QSize(IconSize, IconSize));
    painter.drawImage(fitted(file.icon.size(), icon), file.icon);
    const QRect spectrum = icon.translated(IconSize + Gap, 0);
    painter.drawImage(spectrum.topLeft(), spectrumIcon(file.key.sortedColors, IconSize));

    QRect caption(corner.x(), icon.bottom() + Gap, CellSize.width() - Margin, CaptionHeight / 2);
    painter.setPen(QColor(TitleColor));
    painter.drawText(caption, Qt::AlignVCenter | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(file.title, Qt::ElideRight, caption.width()));
    caption.translate(0, caption.height());
    painter.setPen(QColor(KeyColor));
    painter.drawText(caption, Qt::AlignVCenter, QString::number(file.key.colorSortValue, 'f', 4));
}

} // namespace

QImage contactSheet(const std::vector<MeasuredFile> &files)
{
    const Order order = orderByColor(files);
    if (order.empty()) {
        return {};
    }
    const auto count = double(order.size());
    const double squareness = Aspect * CellSize.height() / CellSize.width();
    const int columns = std::max(1, int(std::ceil(std::sqrt(count * squareness))));
    const int rows = int(std::ceil(count / columns));
    QImage sheet(QSize(std::min(columns, int(order.size())) * CellSize.width() + Margin,
                     rows * CellSize.height() + Margin),
        QImage::Format_RGB32);
    if (sheet.isNull()) {
        return {};
    }
    sheet.fill(Background);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QFont font;
    font.setPixelSize(CaptionSize);
    painter.setFont(font);
    for (int i = 0; i < int(order.size()); ++i) {
        const QPoint corner(i % columns * CellSize.width(), i / columns * CellSize.height());
        drawCell(painter, *order[std::size_t(i)], corner + QPoint(Margin, Margin));
    }
    return sheet;
}
