// The dominant colours of one icon. May be made on any thread.

#pragma once

#include "colour/BitmapView.h"
#include "colour/ColorSpectrum.h"
#include "icons/IconParameters.h"

#include <QImage>

struct IconMeasurement
{
    // How many colours an icon is asked for.
    static constexpr qsizetype ColorCount = 6;
    // Distance in u, v below which two colours look alike.
    static constexpr double AlikeDistance = 50.0;

    // None also when there was nothing to measure.
    HclColors colors;
    bool isMeasured = false;
    // What was asked for.
    float minSaturation = 0;
    float minLuminosity = 0;

    // Whether measuring by these parameters would give the same.
    bool isFor(const IconParameters &parameters) const;
};

// The picture with 8 bits a sample, premultiplied. A picture like that is not copied.
QImage bitmapImageRep(const QImage &image);
// A picture of that kind; empty for any other. The picture must outlive it.
BitmapView bitmapView(const QImage &bitmap);

IconMeasurement measureIcon(const QImage &image, const IconParameters &parameters,
    qsizetype count = IconMeasurement::ColorCount, double deltaE = IconMeasurement::AlikeDistance);
