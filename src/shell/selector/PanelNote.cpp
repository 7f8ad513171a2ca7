#include "shell/selector/PanelNote.h"

#include "support/Shapes.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

void PanelNote::setText(
    const QString &text, Qt::TextElideMode elision, const QFont &font, const QRect &place)
{
    _text.clear();
    _rect = {};
    if (text.isEmpty() || place.isEmpty()) {
        return;
    }
    const QFontMetrics metrics(font);
    // With half its height free at either end.
    const int widest = std::max(0, place.width() - metrics.height());
    _text = metrics.elidedText(text, elision, widest);
    _rect = QRect(0, 0, metrics.horizontalAdvance(_text) + metrics.height(), metrics.height() + 2);
    _rect.moveCenter(place.center());
}

void PanelNote::draw(QPainter &painter, const QColor &foreground, const QColor &plate) const
{
    painter.fillPath(capsulePath(_rect), plate);
    painter.setPen(foreground);
    painter.drawText(_rect, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, _text);
}
