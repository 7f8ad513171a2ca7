// The filter of the grid in small, for as long as it goes on dimming icons after the bubble with
// what was typed has faded.

#pragma once

#include <QCoreApplication>
#include <QRect>
#include <QString>

class QColor;
class QFont;
class QPainter;

class FilterNote final
{
    Q_DECLARE_TR_FUNCTIONS(FilterNote)

public:
    // In the middle of a place; what is too wide for it loses its beginning. Without a filter there
    // is no note.
    void setFilter(const QString &filter, const QFont &font, const QRect &place);

    // As it is shown.
    const QString &text() const { return _text; }
    // In the coordinates of the place; empty without a filter.
    const QRect &rect() const { return _rect; }

    // With the painter's font.
    void draw(QPainter &painter, const QColor &foreground, const QColor &plate) const;

private:
    QString _text;
    QRect _rect;
};
