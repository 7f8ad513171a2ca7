// A puff of smoke where an icon has left the grid: a few soft circles that grow and fade.
//
// It is a window of its own, because the icon may have been dragged out of the grid's. It never
// takes a click or the keyboard, and it is gone after a moment.

#pragma once

#include <QVariantAnimation>
#include <QWidget>

class PoofEffect final : public QWidget
{
    Q_OBJECT

public:
    // Shows the puff at a point, in front of the window of the widget. Nothing where the user's
    // style wants no animations. To be asked for only where the display blends windows: elsewhere
    // the puff would stand on a black square.
    static void show(const QPoint &onScreen, QWidget *near);

    // Paints the puff of a moment, from 0 for the beginning to 1, when nothing is left.
    static void draw(QPainter &painter, const QPointF &center, qreal radius, qreal moment);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    explicit PoofEffect(QWidget *near);

    QVariantAnimation _animation;
};
