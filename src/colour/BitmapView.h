// A bitmap that lies somewhere else in memory, described so that its samples can be read: in planes
// or pixel by pixel, grey or coloured, with or without alpha in any of the usual places.
//
// The view owns nothing; the samples must outlive it.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

enum class ColorSpaceModel { Unknown, Gray, RGB, CMYK, Lab, Indexed, Pattern };

// How the samples of one pixel follow one another.
struct BitmapFormat
{
    // Alpha stands before the colours, not behind them.
    bool isAlphaFirst = false;
    bool isAlphaNonpremultiplied = false;
    // Pixels are 32-bit words in the byte order that puts the last sample first. Not for planes.
    bool isLittleEndian32Bit = false;
};

struct BitmapView
{
    static constexpr int MaximumPlanes = 5;

    // The plane of each sample, in the order of the format; the first one alone when the bitmap is
    // not planar. The first row is the top one.
    std::array<const std::uint8_t *, MaximumPlanes> planes {};
    int pixelsWide = 0;
    int pixelsHigh = 0;
    int bitsPerSample = 8;
    // Alpha included, padding not.
    int samplesPerPixel = 0;
    std::size_t bytesPerRow = 0;
    // Padding included; of one plane when the bitmap is planar.
    int bitsPerPixel = 0;
    bool hasAlpha = false;
    bool isPlanar = false;
    BitmapFormat format;
    ColorSpaceModel colorSpaceModel = ColorSpaceModel::Unknown;
};

// Where to read: the sample of the pixel in column x of row y stands x * pixelStep + y *
// bytesPerRow bytes behind that of the first one.
struct PixelManipulationOffsets
{
    int pixelsWide = 0;
    int pixelsHigh = 0;
    std::size_t pixelStep = 0;
    std::size_t bytesPerRow = 0;
    // Of the first pixel. A grey bitmap has its only sample in all three.
    const std::uint8_t *red = nullptr;
    const std::uint8_t *green = nullptr;
    const std::uint8_t *blue = nullptr;
    // Null when the bitmap has no alpha.
    const std::uint8_t *alpha = nullptr;
    bool isGray = false;
    // The colours have been multiplied by alpha.
    bool isPremultiplied = false;
    // The exponent that encoded the samples, between 1/3 and 1.
    double imageGamma = 1;
};

// Empty for a bitmap without pixels, with samples of other than 8 bits, of a colour model other
// than grey and RGB, or whose figures contradict one another.
std::optional<PixelManipulationOffsets> pixelManipulationOffsetsWithImageGamma(
    const BitmapView &bitmap, double imageGamma);
