#include "icons/ColorKey.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double FullCircle = 360.0;
constexpr qsizetype None = -1;

// Where each range of keys begins, and how far it reaches.
constexpr double GrayKeys = ColorKey::FirstGray;
constexpr double ColorlessKeys = 1.5;
constexpr double GrayRange = 0.5;

// What is found in one walk over the colours.
struct Survey
{
    qint64 total = 0;
    qint64 colorful = 0;
    // The colour that stands out most; an earlier one among equals.
    qsizetype best = None;
    qsizetype firstGray = None;

    Survey(const HclColors &colors, double minSaturation)
    {
        double bestScore = 0;
        for (std::size_t i = 0; i < colors.size(); ++i) {
            const HclColor &color = colors[i];
            total += qint64(color.count);
            if (minSaturation <= color.saturation) {
                colorful += qint64(color.count);
                const double score =
                    double(color.count) * (0.5 * color.luminosity + color.saturation);
                if (score > bestScore) {
                    bestScore = score;
                    best = qsizetype(i);
                }
            } else if (firstGray == None) {
                firstGray = qsizetype(i);
            }
        }
    }
};

// From 0 to below 1, round the wheel from the hue at which it is cut open.
double hueKey(const HclColor &color, float wrapHue)
{
    const double wrap = wrapped(wrapHue, 0, FullCircle) / FullCircle;
    const double hue = color.hue / FullCircle;
    const double key = wrap <= hue ? hue - wrap : (1.0 - wrap) + hue;
    // A hue next to the cut may be rounded up to 1, where grey begins.
    return std::min(key, std::nextafter(1.0, 0.0));
}

} // namespace

SortedColor shownColor(const HclColor &color)
{
    const LinearRGB rgb = applyGamma(linearRGBFromXYZ(xyzFromLuv(color.color)), ImageGamma);
    return { rgb.red, rgb.green, rgb.blue, color.count };
}

bool SortedColor::looksLike(const SortedColor &other) const
{
    // A little more than a file or a picture of 8 bits a sample rounds by.
    constexpr double Alike = 1.0 / 128;
    return std::abs(red - other.red) < Alike && std::abs(green - other.green) < Alike
        && std::abs(blue - other.blue) < Alike;
}

HclColor measuredColor(const SortedColor &color)
{
    const auto linear = [](double sample) {
        return std::pow(std::clamp(sample, 0.0, 1.0), ImageGamma);
    };
    HclColor measured;
    measured.color = luvFromXYZ(
        xyzFromLinearRGB({ linear(color.red), linear(color.green), linear(color.blue), 1 }));
    measured.updateFromColor();
    return measured;
}

SortedColors colorArrayForPrimaryIndex(
    const HclColors &colors, qsizetype primaryIndex, qsizetype secondaryIndex, qsizetype grayIndex)
{
    const auto count = qsizetype(colors.size());
    const auto isThere = [count](qsizetype index) { return index >= 0 && index < count; };
    if (!isThere(primaryIndex) || !isThere(secondaryIndex)) {
        return {};
    }
    SortedColors list;
    list.reserve(count + 1);
    list.append(shownColor(colors[std::size_t(primaryIndex)]));
    list.append(shownColor(colors[std::size_t(secondaryIndex)]));
    for (qsizetype i = 0; i < count; ++i) {
        if (i != secondaryIndex) {
            list.insert(i == grayIndex ? list.size() : 2, shownColor(colors[std::size_t(i)]));
        }
    }
    return list;
}

ColorKey pickAndSortColors(const HclColors &colors, const IconParameters &parameters)
{
    if (colors.isEmpty()) {
        return { ColorKey::Unknown, {}, ColorKey::Problem::NoColors };
    }
    const Survey survey(colors, parameters.minSaturation);
    if (survey.total <= 0) {
        return { ColorKey::Unknown, {}, ColorKey::Problem::ZeroPixelQuantity };
    }
    const auto [total, colorful, best, gray] = survey;
    // Named in the capture for compilers that take no structured binding by itself.
    const auto result = [&colors, gray = gray](
                            double value, qsizetype primary, qsizetype secondary) {
        return ColorKey { value, colorArrayForPrimaryIndex(colors, primary, secondary, gray) };
    };
    if (best != None && double(colorful) / double(total) > double(parameters.grayThreshold)) {
        return result(hueKey(colors[std::size_t(best)], parameters.wrapHue), best, best);
    }
    if (gray == None) {
        return {};
    }
    if (parameters.graysBySecondaryColor && best != None) {
        const double accent = hueKey(colors[std::size_t(best)], parameters.wrapHue);
        return result(GrayKeys + GrayRange * accent, gray, best);
    }
    const double lightness = std::clamp(colors[std::size_t(gray)].luminosity, 0.0, 1.0);
    const double first = parameters.graysBySecondaryColor ? ColorlessKeys : GrayKeys;
    return result(first + GrayRange * (1.0 - lightness), gray, gray);
}

ColorKey pickCorrectedColor(
    const HclColors &colors, const IconParameters &parameters, const SortedColor &corrected)
{
    HclColor counting = measuredColor(corrected);
    SortedColors list { corrected };
    for (const HclColor &color : colors) {
        const SortedColor shown = shownColor(color);
        if (shown.looksLike(corrected)) {
            counting = color;
            list.first() = shown;
        }
        list.append(shown);
    }
    if (double(parameters.minSaturation) <= counting.saturation) {
        return { hueKey(counting, parameters.wrapHue), list };
    }
    const double lightness = std::clamp(counting.luminosity, 0.0, 1.0);
    const double first = parameters.graysBySecondaryColor ? ColorlessKeys : GrayKeys;
    return { first + GrayRange * (1.0 - lightness), list };
}
