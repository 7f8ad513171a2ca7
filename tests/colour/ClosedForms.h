// Colours worked out by hand to fifty digits, by the letters of BitmapText, and some means of them.

#pragma once

#include "colour/ColorSpectrum.h"

#include <QStringList>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace ClosedForms {

constexpr double Precision = 1e-13;

struct ClosedForm
{
    char letter;
    double L, u, v, chroma, hue;
    // White's u and v are differences of figures that agree in their first four digits.
    double precision = Precision;
};

constexpr ClosedForm Colors[] {
    { 'r', 53.24079414130720547, 175.02221100918779832, 37.75929076540291679, 179.04898320194644586,
        12.17439925928580830 },
    { 'n', 87.73472235279791815, -83.06572867717567888, 107.40325706764067732,
        135.77693069666832420, 127.71838309096277292 },
    { 'b', 32.29701093285072833, -9.40104554396885040, -130.34061128343071777,
        130.67920495265558325, 265.87458519919854317 },
    { 'w', 100.00000386666653778, 0.01346781986639467, 0.00538845883076866, 0.01450578024528649,
        21.80629030663996962, 1e-11 },
    // A grey keeps its lightness alone.
    { 'g', 53.97601110848206933, 0, 0, 0, 0 },
    { 'k', 0, 0, 0, 0, 0 },
    // As much black as white.
    { 'h', 50.00000193333326889, 0, 0, 0, 0 },
    // A third of (255, 0, 0) and two thirds of (254, 0, 0), thirds of single precision.
    { 't', 53.10797696254296732662, 174.58559174641681001259, 37.66509452824145074303,
        178.60231854953027, 12.17439925928580830 },
};

inline ClosedForm closedForm(char letter)
{
    return *std::find_if(std::begin(Colors), std::end(Colors),
        [letter](const ClosedForm &color) { return color.letter == letter; });
}

// Nothing is near 0 but 0.
inline bool isNear(double value, double expected, double precision = Precision)
{
    const bool isIt = std::abs(value - expected) <= precision * std::abs(expected);
    if (!isIt) {
        qInfo("%.17g is not near %.17g", value, expected);
    }
    return isIt;
}

// Colours written as "r16320 b8160".
inline bool areColors(const HclColors &colors, const QString &text)
{
    const QStringList words = text.split(u' ');
    bool are = colors.size() == std::size_t(words.size());
    for (qsizetype i = 0; are && i < words.size(); ++i) {
        const HclColor &color = colors[std::size_t(i)];
        const ClosedForm form = closedForm(words[i][0].toLatin1());
        are = isNear(color.color.L, form.L) && isNear(color.color.u, form.u, form.precision)
            && isNear(color.color.v, form.v, form.precision) && color.color.alpha == 1
            && isNear(color.hue, form.hue, form.precision)
            && isNear(color.saturation, form.chroma / 100, form.precision)
            && isNear(color.luminosity, form.L / 100)
            && color.count == words[i].sliced(1).toULongLong();
    }
    return are;
}

} // namespace ClosedForms
