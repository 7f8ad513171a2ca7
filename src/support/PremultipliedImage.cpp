#include "support/PremultipliedImage.h"

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
    QImage result(image.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < result.height(); ++y) {
        const auto *from = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        auto *to = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            to[x] = premultiplied(from[x]);
        }
    }
    return result;
}
