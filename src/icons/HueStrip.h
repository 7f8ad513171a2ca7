// The colours of a group of icons side by side, in the order by colour: hues first, greys at the
// end, each icon as wide as any other. A window on it holds what looks alike.
//
// Places are fractions of the strip, from 0 at its beginning to 1 at its end.

#pragma once

#include "icons/ColorKey.h"

#include <QList>

// A range of places in the order by colour.
struct HueWindow
{
    // Values of ColorKey::colorSortValue, both included.
    double from = 0;
    double to = 0;

    bool holds(double colorSortValue) const
    {
        return from <= colorSortValue && colorSortValue <= to;
    }

    friend bool operator==(const HueWindow &, const HueWindow &) = default;
};

class HueStrip final
{
public:
    struct Icon
    {
        double colorSortValue = ColorKey::Unknown;
        SortedColor color;
        // Whatever the maker knows it by.
        qsizetype source = 0;

        bool isGray() const { return colorSortValue >= ColorKey::FirstGray; }
    };

    struct Span
    {
        double from = 0;
        double to = 0;
    };

    HueStrip() = default;
    // Icons in any order; those whose colour is not known are left out.
    explicit HueStrip(const QList<Icon> &icons);

    // In the order by colour.
    const QList<Icon> &icons() const { return _icons; }
    qsizetype count() const { return _icons.size(); }
    // Fewer than two icons leave nothing to choose from.
    bool isOfUse() const { return count() > 1; }

    // The icon at a place, the first or the last one beyond the ends; -1 when there are none.
    qsizetype indexAt(double place) const;
    // The icon that stands nearest to a place in the order by colour; -1 when there are none.
    qsizetype indexNearest(double colorSortValue) const;
    // The next icon in a direction, 1 or -1, that is well told from this one by its colour, or the
    // last one there is.
    qsizetype indexAfter(qsizetype index, int direction) const;

    // What looks like an icon: a tenth of the colour wheel round its hue, or a few shades of grey.
    HueWindow windowAt(qsizetype index) const;
    // Where the icons of a window lie; nothing at 0 when there are none.
    Span spanOf(const HueWindow &window) const;

private:
    QList<Icon> _icons;
};
