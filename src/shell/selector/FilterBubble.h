// The picture of what has been typed to filter the grid: large letters with a soft shadow on a
// rounded rectangle, in the middle of a view.
//
// Text that is too wide for the view loses its beginning, so that what was typed last stays to be
// seen. The picture is made once for a text and drawn as it is for as long as that stands, faded or
// not.

#pragma once

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QRect>
#include <QSize>
#include <QString>

class QPainter;

class FilterBubble final
{
public:
    // Without a text there is no bubble. A caption stands below it in smaller letters, and loses
    // its end where it is too wide.
    void setText(const QString &text, const QSize &viewSize, const QString &caption = {});
    // Of the letters and of the rectangle behind them.
    void setColors(const QColor &foreground, const QColor &plate);

    bool isEmpty() const { return _shownText.isEmpty(); }
    // As it is shown.
    const QString &text() const { return _shownText; }
    const QString &caption() const { return _shownCaption; }
    // Whole points from the upper left corner of the view; empty without a text.
    const QRect &rect() const { return _rect; }

    // In as many pixels a point as the painter has.
    void draw(QPainter &painter, qreal alpha);

private:
    void makePicture(qreal ratio);
    void drawTexts(QPainter &painter, const QRectF &rect, const QColor &color) const;
    QImage shadow() const;

    QString _shownText;
    QString _shownCaption;
    QRect _rect;
    QColor _foreground = Qt::white;
    QColor _plate = Qt::transparent;
    // Null until it is drawn.
    QPixmap _picture;
};
