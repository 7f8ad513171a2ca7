#include "shell/selector/MessageBubble.h"

#include "support/Shapes.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

// In points.
constexpr int TextSize = 16;
constexpr int Inset = 18;
constexpr int SideMargin = 16;
// A longer line is hard to follow.
constexpr int LongestLine = 340;
constexpr int ShortestLine = 60;
constexpr qreal CornerRadius = 16;

constexpr int Flags = Qt::AlignCenter | Qt::TextWordWrap;

QFont messageFont()
{
    QFont font;
    font.setPixelSize(TextSize);
    return font;
}

} // namespace

void MessageBubble::setText(const QString &text, const QSize &viewSize)
{
    _text = text;
    _rect = {};
    if (text.isEmpty()) {
        return;
    }
    const int line =
        std::clamp(viewSize.width() - 2 * (Inset + SideMargin), ShortestLine, LongestLine);
    const QRect bounds =
        QFontMetrics(messageFont()).boundingRect(QRect(0, 0, line, 0), Flags, text);
    _rect = QRect(QPoint(), bounds.size()).adjusted(-Inset, -Inset, Inset, Inset);
    _rect.moveCenter(QRect(QPoint(), viewSize).center());
}

void MessageBubble::draw(QPainter &painter, const QColor &foreground, const QColor &plate) const
{
    painter.fillPath(roundedRectanglePath(_rect, CornerRadius), plate);
    painter.setFont(messageFont());
    painter.setPen(foreground);
    painter.drawText(_rect.adjusted(Inset, Inset, -Inset, -Inset), Flags | Qt::TextDontClip, _text);
}
