#include "colour/BitmapView.h"

#include <algorithm>
#include <utility>

namespace {

constexpr double SmallestGamma = 1.0 / 3.0;

int colorSampleCount(const BitmapView &bitmap)
{
    return bitmap.samplesPerPixel - (bitmap.hasAlpha ? 1 : 0);
}

bool isColorModelReadable(const BitmapView &bitmap)
{
    switch (bitmap.colorSpaceModel) {
    case ColorSpaceModel::Gray:
        return colorSampleCount(bitmap) >= 1 && bitmap.samplesPerPixel <= 2;
    case ColorSpaceModel::RGB:
        return colorSampleCount(bitmap) >= 3 && bitmap.samplesPerPixel <= 4;
    default:
        return false;
    }
}

bool isShapeReadable(const BitmapView &bitmap)
{
    const int samplesTogether = bitmap.isPlanar ? 1 : bitmap.samplesPerPixel;
    const int bytesPerPixel = bitmap.bitsPerPixel / 8;
    const BitmapFormat &format = bitmap.format;
    return bitmap.pixelsWide > 0 && bitmap.pixelsHigh > 0 && bitmap.bitsPerSample == 8
        && bitmap.bitsPerPixel % 8 == 0 && bytesPerPixel >= samplesTogether
        && bitmap.bytesPerRow / std::size_t(bytesPerPixel) >= std::size_t(bitmap.pixelsWide)
        && !(format.isLittleEndian32Bit && (bitmap.isPlanar || bytesPerPixel != 4));
}

// Null where a plane is missing.
const std::uint8_t *firstSample(const BitmapView &bitmap, int index)
{
    if (bitmap.isPlanar) {
        return bitmap.planes[std::size_t(index)];
    }
    const int place = bitmap.format.isLittleEndian32Bit ? 3 - index : index;
    return bitmap.planes[0] ? bitmap.planes[0] + place : nullptr;
}

} // namespace

std::optional<PixelManipulationOffsets> pixelManipulationOffsetsWithImageGamma(
    const BitmapView &bitmap, double imageGamma)
{
    if (!isColorModelReadable(bitmap) || !isShapeReadable(bitmap)) {
        return std::nullopt;
    }
    const bool isGray = bitmap.colorSpaceModel == ColorSpaceModel::Gray;
    const bool isAlphaFirst = bitmap.hasAlpha && bitmap.format.isAlphaFirst;
    const int firstColor = isAlphaFirst ? 1 : 0;
    const int alpha = isAlphaFirst ? 0 : bitmap.samplesPerPixel - 1;

    PixelManipulationOffsets offsets;
    offsets.pixelsWide = bitmap.pixelsWide;
    offsets.pixelsHigh = bitmap.pixelsHigh;
    offsets.pixelStep = std::size_t(bitmap.bitsPerPixel) / 8;
    offsets.bytesPerRow = bitmap.bytesPerRow;
    offsets.red = firstSample(bitmap, firstColor);
    offsets.green = isGray ? offsets.red : firstSample(bitmap, firstColor + 1);
    offsets.blue = isGray ? offsets.red : firstSample(bitmap, firstColor + 2);
    offsets.alpha = bitmap.hasAlpha ? firstSample(bitmap, alpha) : nullptr;
    offsets.isGray = isGray;
    offsets.isPremultiplied = bitmap.hasAlpha && !bitmap.format.isAlphaNonpremultiplied;
    offsets.imageGamma = std::clamp(imageGamma, SmallestGamma, 1.0);

    const bool isWhole =
        offsets.red && offsets.green && offsets.blue && (offsets.alpha || !bitmap.hasAlpha);
    return isWhole ? std::optional(offsets) : std::nullopt;
}
