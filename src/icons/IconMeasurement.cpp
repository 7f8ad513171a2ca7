#include "icons/IconMeasurement.h"

#include "colour/DominantColors.h"
#include "icons/store/Log.h"
#include "support/PremultipliedImage.h"

#include <QSysInfo>

#include <cmath>

namespace {

// Not a number is the same as itself here, or it would be measured for ever.
bool isSame(float one, float other)
{
    return one == other || (std::isnan(one) && std::isnan(other));
}

} // namespace

bool IconMeasurement::isFor(const IconParameters &parameters) const
{
    return isMeasured && isSame(minSaturation, parameters.minSaturation)
        && isSame(minLuminosity, parameters.minLuminosity);
}

QImage bitmapImageRep(const QImage &image)
{
    if (image.isNull()) {
        qCWarning(lcIcons, "Invalid image size for creating new bitmap in %s", __func__);
        return {};
    }
    return premultipliedImage(image);
}

BitmapView bitmapView(const QImage &bitmap)
{
    if (bitmap.format() != QImage::Format_ARGB32_Premultiplied) {
        return {};
    }
    BitmapView view;
    view.planes[0] = bitmap.constBits();
    view.pixelsWide = bitmap.width();
    view.pixelsHigh = bitmap.height();
    view.samplesPerPixel = 4;
    view.bytesPerRow = std::size_t(bitmap.bytesPerLine());
    view.bitsPerPixel = bitmap.depth();
    view.hasAlpha = true;
    // Qt's pixels are 32-bit words of the machine, alpha in the highest byte.
    view.format.isAlphaFirst = true;
    view.format.isLittleEndian32Bit = QSysInfo::ByteOrder == QSysInfo::LittleEndian;
    view.colorSpaceModel = ColorSpaceModel::RGB;
    return view;
}

IconMeasurement measureIcon(
    const QImage &image, const IconParameters &parameters, qsizetype count, double deltaE)
{
    const QImage bitmap = bitmapImageRep(image);
    return { createDominantColorsWithCount(bitmapView(bitmap), count, parameters.minSaturation,
                 parameters.minLuminosity, deltaE),
        true, parameters.minSaturation, parameters.minLuminosity };
}
