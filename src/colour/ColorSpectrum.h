// The colours of a bitmap, gathered by hue: one bin for each degree of the colour wheel and one for
// everything grey.

#pragma once

#include "colour/ColorConversion.h"
#include "colour/ColorHistogram.h"
#include "colour/HeapArray.h"

#include <array>
#include <cstdint>

// One bin of a spectrum, and one dominant colour.
struct HclColor
{
    // The mean; alpha is 1 once there are pixels.
    Luv color;
    std::array<double, 4> reservedColor {};
    // Pixels, each counted as much as its alpha says.
    std::uint64_t count = 0;
    // Degrees, from 0 up to but not including 360.
    double hue = 0;
    // Chroma / 100.
    double saturation = 0;
    // L / 100.
    double luminosity = 0;

    // How much the colour stands out. Nothing for pure black, however much of it there is.
    double weight() const { return double(count) * (saturation + 0.5 * luminosity); }

    // Takes hue, saturation and luminosity from the mean.
    void updateFromColor();
};

using HclColors = HeapArray<HclColor>;

inline constexpr std::size_t GrayBin = 360;
inline constexpr std::size_t SpectrumSize = GrayBin + 1;

// SpectrumSize bins by hue. Empty when the bitmap has nothing to measure or memory runs out, with
// one line on standard error.
HclColors createColorSpectrum(const BitmapView &bitmap);

// The same of a histogram.
HclColors createColorSpectrumFromHistogram(const ColorHistogram &histogram);
