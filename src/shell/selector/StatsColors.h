// The colours of the group selector, worked out from those of the window.
//
// The row and the capsules on it are filled with shares of the window's opacity. Where a label
// could not be read like that, the fill of its capsule gives way a little, or the label changes to
// the other one of black and white, or the row becomes more opaque, in this order.

#pragma once

#include <QColor>

struct StatsColors
{
    struct Capsule
    {
        QColor fill;
        QColor text;
    };

    StatsColors() = default;
    StatsColors(float winAlpha, const QColor &winColor);

    bool operator==(const StatsColors &other) const { return _from == other._from; }

    // Behind all capsules.
    QColor row;
    // A capsule that is none of the following has no fill.
    Capsule plain;
    Capsule hovered;
    Capsule pressed;
    Capsule selected;

private:
    // The window's colour at its opacity.
    QColor _from;
};
