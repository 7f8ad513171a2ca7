// The row of capsules of the group selector, as arithmetic.
//
// Points with y growing upwards from the lower edge of the control. A capsule is as high as the
// control but for a point above and below; its text lies in it, with half the height of the capsule
// free at either end. Between capsules there is one point.

#pragma once

#include <QList>
#include <QRectF>
#include <QSizeF>

class StatsLayout final
{
public:
    struct Button
    {
        QRectF text;
        QRectF capsule;

        bool operator==(const Button &) const = default;
    };

    StatsLayout() = default;
    // A button for each text, in a control of the given height.
    StatsLayout(const QList<QSizeF> &textSizes, qreal height);

    // The first of several wordings, the long ones before the short ones, whose buttons fit into a
    // width; the last one when none does.
    static qsizetype fittingWording(
        const QList<QList<QSizeF>> &wordings, qreal height, qreal available);

    const QList<Button> &buttons() const { return _buttons; }
    // Of the whole row, rounded.
    int totalWidth() const { return _totalWidth; }
    // The index of the button whose capsule's rectangle holds a point; -1 when there is none.
    int buttonAt(const QPointF &point) const;

    bool operator==(const StatsLayout &) const = default;

private:
    QList<Button> _buttons;
    int _totalWidth = 0;
};
