// What one pass over the icons asks of each of them: a size, and how its colours are to be judged.

#pragma once

#include <QtGlobal>

struct IconParameters
{
    // No icon is loaded larger than this, whatever is asked.
    static constexpr qint64 LargestIconSize = 128;

    // Edge in pixels, as the preference has it.
    qint64 maximumIconSize = 128;
    // Fraction of colourful pixels from which an icon is ordered by its hue.
    float grayThreshold = 0;
    bool graysBySecondaryColor = false;
    // Degrees at which the colour wheel is cut open; counted round the wheel outside 0 to 360.
    float wrapHue = 0;
    // Chroma / 100 from which a colour counts as colourful.
    float minSaturation = 0;
    // Asked of the measurement, which makes no difference by it.
    float minLuminosity = 0;

    // Edge in pixels of the picture that is really loaded.
    int iconSize() const { return int(qBound<qint64>(1, maximumIconSize, LargestIconSize)); }

    friend bool operator==(const IconParameters &, const IconParameters &) = default;
};
