// A few words at the panel's upper edge, between its buttons, about what goes on: the filter after
// the bubble with what was typed has faded, or files that wait to be opened.

#pragma once

#include <QRect>
#include <QString>

class QColor;
class QFont;
class QPainter;

class PanelNote final
{
public:
    // In the middle of a place; what is too wide for it is shortened. Without a text there is no
    // note.
    void setText(
        const QString &text, Qt::TextElideMode elision, const QFont &font, const QRect &place);

    // As it is shown.
    const QString &text() const { return _text; }
    // In the coordinates of the place; empty without a text.
    const QRect &rect() const { return _rect; }

    // With the painter's font.
    void draw(QPainter &painter, const QColor &foreground, const QColor &plate) const;

private:
    QString _text;
    QRect _rect;
};
