#include "support/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

// Pixels have whole values, and those may come out a little worse.
constexpr double Margin = 0.05;

// What a component adds to the brightness that a screen gives off, from the definition of sRGB.
double linear(float component)
{
    return component <= 0.04045F ? double(component) / 12.92
                                 : std::pow((double(component) + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    const QColor rgb = color.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF())
        + 0.0722 * linear(rgb.blueF());
}

QColor withAlpha(QColor color, double alpha)
{
    color.setAlphaF(float(alpha));
    return color;
}

} // namespace

QColor Contrast::blended(const QColor &above, const QColor &below)
{
    const float alpha = above.alphaF();
    const auto part = [alpha](float over, float under) {
        return std::clamp(alpha * over + (1 - alpha) * under, 0.0F, 1.0F);
    };
    const QColor rgb = above.toRgb();
    return QColor::fromRgbF(part(rgb.redF(), below.redF()), part(rgb.greenF(), below.greenF()),
        part(rgb.blueF(), below.blueF()));
}

double Contrast::ratio(const QColor &one, const QColor &other)
{
    // The glare of a screen in a lit room adds to both.
    constexpr double glare = 0.05;
    const auto [darker, lighter] = std::minmax({ luminance(one), luminance(other) });
    return (lighter + glare) / (darker + glare);
}

Backdrop Backdrop::with(const QColor &layer) const
{
    Backdrop result;
    result._darkest = Contrast::blended(layer, _darkest);
    result._lightest = Contrast::blended(layer, _lightest);
    return result;
}

double Backdrop::contrast(const QColor &text) const
{
    return std::min(Contrast::ratio(Contrast::blended(text, _darkest), _darkest),
        Contrast::ratio(Contrast::blended(text, _lightest), _lightest));
}

bool Backdrop::carries(const QColor &text) const
{
    return contrast(text) >= Contrast::Enough + Margin;
}

QColor Backdrop::strengthened(const QColor &layer, const QColor &text) const
{
    if (with(layer).carries(text)) {
        return layer;
    }
    // Halving the difference so often comes nearer than a pixel can show.
    constexpr int steps = 12;
    double low = double(layer.alphaF());
    double high = 1;
    for (int i = 0; i < steps; ++i) {
        const double middle = (low + high) / 2;
        (with(withAlpha(layer, middle)).carries(text) ? high : low) = middle;
    }
    return withAlpha(layer, high);
}
