#include "support/PremultipliedImage.h"

#include <algorithm>

namespace {

// sample * alpha / 255, to nearest; exact for all 8-bit values.
uint multiplied(uint sample, uint alpha)
{
    const uint product = sample * alpha + 128;
    return (product + (product >> 8)) >> 8;
}

QRgb premultiplied(QRgb pixel)
{
    const uint alpha = uint(qAlpha(pixel));
    return qRgba(int(multiplied(uint(qRed(pixel)), alpha)),
        int(multiplied(uint(qGreen(pixel)), alpha)), int(multiplied(uint(qBlue(pixel)), alpha)),
        int(alpha));
}

} // namespace

QImage premultipliedImage(QImage image)
{
    if (image.format() == QImage::Format_ARGB32_Premultiplied) {
        return image;
    }
    const bool isPremultiplied = image.pixelFormat().premultiplied() == QPixelFormat::Premultiplied;
    if (!image.hasAlphaChannel() || isPremultiplied) {
        image.convertTo(QImage::Format_ARGB32_Premultiplied);
        return image;
    }
    image.convertTo(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        std::transform(row, row + image.width(), row, premultiplied);
    }
    image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
    return image;
}
