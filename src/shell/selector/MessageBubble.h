// A sentence for the user, in the middle of a view: on a rounded plate, in as many lines as it
// needs.

#pragma once

#include <QRect>
#include <QSize>
#include <QString>

class QColor;
class QPainter;

class MessageBubble final
{
public:
    // Without a text there is no bubble.
    void setText(const QString &text, const QSize &viewSize);

    const QString &text() const { return _text; }
    // Whole points from the upper left corner of the view; empty without a text.
    const QRect &rect() const { return _rect; }

    void draw(QPainter &painter, const QColor &foreground, const QColor &plate) const;

private:
    QString _text;
    QRect _rect;
};
