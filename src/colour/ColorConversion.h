// Colours in four systems and the ways between them. Everything refers to D65 and to the sRGB
// primaries; the encoded samples of a bitmap are taken as a pure power law of 2.2, not as the
// piecewise sRGB curve.
//
// Plain functions of their arguments, for any thread. Alpha is handed through.

#pragma once

#include <array>
#include <cstdint>

// Each component 0 to 1, the gamma removed.
struct LinearRGB
{
    double red = 0, green = 0, blue = 0, alpha = 0;
};

// CIE 1931 tristimulus values; Y of white is 1.
struct XYZ
{
    double X = 0, Y = 0, Z = 0, alpha = 0;
};

// CIE 1976 L*u*v*, L from 0 to 100.
struct Luv
{
    double L = 0, u = 0, v = 0, alpha = 0;
};

// The polar form of Luv: chroma, and hue in radians, -π to π.
struct LCh
{
    double L = 0, C = 0, h = 0, alpha = 0;
};

inline constexpr double ImageGamma = 2.2;

// Entry i is (i / 255) to the power 2.2. Made on first use, by whichever thread comes first.
const std::array<double, 256> &gammaTable();

// The linear colour of encoded samples.
LinearRGB linearRGBFromBytes(
    std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha);

// With the matrix of the sRGB primaries, http://www.brucelindbloom.com/Eqn_RGB_XYZ_Matrix.html
XYZ xyzFromLinearRGB(const LinearRGB &color);
// The definition of CIE 1976 with exact constants, http://www.brucelindbloom.com/LContinuity.html
// Black has no chromaticity and becomes 0, 0, 0.
Luv luvFromXYZ(const XYZ &color);
LCh lchFromLuv(const Luv &color);

// The inverse of luvFromXYZ(). A chromaticity that no light has (v' not above 0) keeps Y alone.
XYZ xyzFromLuv(const Luv &color);
// Each component, alpha too, is clamped into 0 to 1: the mean of colours may lie outside what a
// screen can show.
LinearRGB linearRGBFromXYZ(const XYZ &color);
// Each component to the power 1 / gamma; alpha stays as it is.
LinearRGB applyGamma(const LinearRGB &color, double gamma);

double degreesFromRadians(double radians);
// The value moved into [low, high) by whole widths of that range; `low` for one that is not finite.
double wrapped(double value, double low, double high);
