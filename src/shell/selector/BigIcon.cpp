#include "shell/selector/BigIcon.h"

#include "support/Shapes.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int NameSize = 20;
constexpr int FolderSize = 10;

// How far above the middle of the view things are, in points.
constexpr int PlateTop = 79;
constexpr int IconTop = BigIcon::Width;
constexpr int NameBottom = -32;
constexpr int NameHeight = 25;
constexpr int FolderBottom = -50;
constexpr int FolderHeight = 14;
// As far below the folder as the plate reaches above the icon.
constexpr int PlateBottom = FolderBottom - (PlateTop - IconTop);

constexpr int SideInset = 20;
constexpr qreal CornerRadius = 24;

QFont fontOfSize(int size)
{
    QFont font;
    font.setPixelSize(size);
    return font;
}

} // namespace

BigIcon::BigIcon(const QString &name, const QString &folder, const QSize &viewSize)
    : _middle(viewSize.width() / 2, viewSize.height() / 2)
{
    const QFontMetricsF nameMetrics(fontOfSize(NameSize));
    const QFontMetricsF folderMetrics(fontOfSize(FolderSize));
    const int widest = std::max(0, viewSize.width() - 2 * SideInset);
    _name = nameMetrics.elidedText(name, Qt::ElideRight, widest);
    _folder = folderMetrics.elidedText(folder, Qt::ElideMiddle, widest);
    const qreal text =
        std::max(nameMetrics.horizontalAdvance(_name), folderMetrics.horizontalAdvance(_folder));
    // As much on either side of the middle, and rounded up no farther than the view goes.
    const int half =
        std::max(std::min(int(std::ceil(text / 2)), widest / 2), Width / 2) + SideInset;
    _rect = QRect(_middle.x() - half, _middle.y() - PlateTop, 2 * half, PlateTop - PlateBottom);
}

void BigIcon::draw(
    QPainter &painter, const QImage &icon, const QColor &foreground, const QColor &plate) const
{
    painter.fillPath(roundedRectanglePath(_rect, CornerRadius), plate);
    painter.drawImage(QRect(_middle.x() - Width / 2, _middle.y() - IconTop, Width, Width), icon);

    painter.setPen(foreground);
    const auto drawLine = [&](const QString &text, int size, int bottom, int height) {
        painter.setFont(fontOfSize(size));
        painter.drawText(QRect(_rect.x(), _middle.y() - bottom - height, _rect.width(), height),
            Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, text);
    };
    drawLine(_name, NameSize, NameBottom, NameHeight);
    drawLine(_folder, FolderSize, FolderBottom, FolderHeight);
}
