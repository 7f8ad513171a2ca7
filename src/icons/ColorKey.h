// Where an icon stands in the order by colour, worked out from its dominant colours.
//
// Colourful icons come first, from 0 to below 1, by the hue of the colour that stands out most.
// Icons that are mostly grey follow from 1 to 2, light ones first, or by the hue of the little
// colour that they have. What cannot be judged stands at the end.

#pragma once

#include "colour/ColorSpectrum.h"
#include "icons/IconParameters.h"

#include <QColor>
#include <QList>

// A dominant colour in the way in which it is shown: sRGB, each component 0 to 1.
struct SortedColor
{
    double red = 0, green = 0, blue = 0;
    // Of HclColor.
    quint64 count = 0;

    QColor color() const { return QColor::fromRgbF(float(red), float(green), float(blue)); }
    friend bool operator==(const SortedColor &, const SortedColor &) = default;
    // Whether they cannot be told apart, however much of an icon they cover.
    bool looksLike(const SortedColor &other) const;
};

using SortedColors = QList<SortedColor>;

SortedColor shownColor(const HclColor &color);
// The way back, but for what no screen can show; nothing is counted.
HclColor measuredColor(const SortedColor &color);

// One of the colours that were measured.
struct MeasuredColor
{
    SortedColor color;
    bool isGray = false;
};

struct ColorKey
{
    enum class Problem {
        None,
        // There was nothing to pick from.
        NoColors,
        // No colour covers anything.
        ZeroPixelQuantity,
    };

    // The key of an icon that could not be judged.
    static constexpr double Unknown = 10.0;
    // The first key of an icon that counts as grey.
    static constexpr double FirstGray = 1.0;

    double colorSortValue = Unknown;
    // Of colorArrayForPrimaryIndex(); empty with an unknown key.
    SortedColors sortedColors;
    Problem problem = Problem::None;
};

ColorKey pickAndSortColors(const HclColors &colors, const IconParameters &parameters);

// The same where the user says which colour counts: the icon stands where that colour belongs, also
// when the icon has no such colour. The counts of what was measured stay.
ColorKey pickCorrectedColor(
    const HclColors &colors, const IconParameters &parameters, const SortedColor &corrected);

// The primary colour, the secondary one, then the others in reverse order, the grey one behind
// those that precede it. Only the secondary one is not repeated. A grayIndex of -1 stands for none.
// Empty when there are no colours, or no such ones.
SortedColors colorArrayForPrimaryIndex(
    const HclColors &colors, qsizetype primaryIndex, qsizetype secondaryIndex, qsizetype grayIndex);
