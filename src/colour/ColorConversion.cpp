#include "colour/ColorConversion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// Chromaticity of the white point D65.
constexpr double WhiteU = 0.1978294495177785;
constexpr double WhiteV = 0.468332168241386;
// Below this Y, and the L that belongs to it, lightness is a straight line of slope Kappa.
constexpr double Epsilon = 216.0 / 24389.0;
constexpr double Kappa = 24389.0 / 27.0;
constexpr double LinearL = 8.0;

std::array<double, 256> makeGammaTable()
{
    std::array<double, 256> table {};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = std::pow(double(i) / 255.0, ImageGamma);
    }
    return table;
}

} // namespace

const std::array<double, 256> &gammaTable()
{
    static const std::array<double, 256> table = makeGammaTable();
    return table;
}

LinearRGB linearRGBFromBytes(
    std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha)
{
    const std::array<double, 256> &table = gammaTable();
    return { table[red], table[green], table[blue], alpha / 255.0 };
}

XYZ xyzFromLinearRGB(const LinearRGB &color)
{
    const auto &[red, green, blue, alpha] = color;
    return { 0.4124564 * red + 0.3575761 * green + 0.1804375 * blue,
        0.2126729 * red + 0.7151522 * green + 0.0721750 * blue,
        0.0193339 * red + 0.1191920 * green + 0.9503041 * blue, alpha };
}

Luv luvFromXYZ(const XYZ &color)
{
    const auto &[X, Y, Z, alpha] = color;
    const double sum = X + 15 * Y + 3 * Z;
    if (sum == 0) {
        return { 0, 0, 0, alpha };
    }
    const double L = Y > Epsilon ? 116 * std::cbrt(Y) - 16 : Kappa * Y;
    return { L, 13 * L * (4 * X / sum - WhiteU), 13 * L * (9 * Y / sum - WhiteV), alpha };
}

LCh lchFromLuv(const Luv &color)
{
    return { color.L, std::sqrt(color.u * color.u + color.v * color.v),
        std::atan2(color.v, color.u), color.alpha };
}

XYZ xyzFromLuv(const Luv &color)
{
    if (color.L == 0) {
        return { 0, 0, 0, color.alpha };
    }
    const double root = (color.L + 16) / 116;
    const double Y = color.L > LinearL ? root * root * root : color.L / Kappa;
    const double u = color.u / (13 * color.L) + WhiteU;
    const double v = color.v / (13 * color.L) + WhiteV;
    if (!(v > 0)) {
        return { 0, Y, 0, color.alpha };
    }
    return { Y * 9 * u / (4 * v), Y, Y * (12 - 3 * u - 20 * v) / (4 * v), color.alpha };
}

LinearRGB linearRGBFromXYZ(const XYZ &color)
{
    const auto &[X, Y, Z, alpha] = color;
    return { std::clamp(3.2404542 * X - 1.5371385 * Y - 0.4985314 * Z, 0.0, 1.0),
        std::clamp(-0.9692660 * X + 1.8760108 * Y + 0.0415560 * Z, 0.0, 1.0),
        std::clamp(0.0556434 * X - 0.2040259 * Y + 1.0572252 * Z, 0.0, 1.0),
        std::clamp(alpha, 0.0, 1.0) };
}

LinearRGB applyGamma(const LinearRGB &color, double gamma)
{
    const double exponent = 1 / gamma;
    return { std::pow(color.red, exponent), std::pow(color.green, exponent),
        std::pow(color.blue, exponent), color.alpha };
}

double degreesFromRadians(double radians)
{
    return radians * 180 / std::numbers::pi;
}

double wrapped(double value, double low, double high)
{
    if (value >= low && value < high) {
        return value;
    }
    if (!std::isfinite(value)) {
        return low;
    }
    const double width = high - low;
    const double moved = value - std::floor((value - low) / width) * width;
    // A value just below the range comes out at its upper end, which does not belong to it.
    return moved >= low && moved < high ? moved : low;
}
