#include "colour/ColorSpectrum.h"

#include "colour/BitmapView.h"

#include <cmath>
#include <cstdio>

namespace {

constexpr double FullCircle = 360;

// The chroma / 100 from which a colour of this lightness / 100 looks coloured: a light one needs
// hardly any, black could never have enough.
double leastChroma(double lightness)
{
    return lightness >= 0 ? 0.01 / (lightness + 0.01) - 0.01 : 1.0;
}

double hueInDegrees(double radians)
{
    return wrapped(degreesFromRadians(radians), 0, FullCircle);
}

std::size_t binOfHue(double radians)
{
    const double rounded = std::floor(hueInDegrees(radians) + 0.5);
    return rounded >= FullCircle ? 0 : std::size_t(rounded);
}

// The shares of the old and the added pixels in the new mean. Single precision, in which counts
// above 2^24 lose their last digits.
struct Shares
{
    double old = 0, added = 0;

    Shares(std::uint64_t oldCount, std::uint64_t addedCount)
        : old(float(oldCount) / float(oldCount + addedCount))
        , added(float(addedCount) / float(oldCount + addedCount))
    { }
};

void addToSpectrum(HclColors &bins, const ColorHistogramEntry &entry)
{
    const Luv color = luvFromXYZ(
        xyzFromLinearRGB(linearRGBFromBytes(entry.red, entry.green, entry.blue, entry.alpha)));
    const double chroma = std::sqrt(color.u * color.u + color.v * color.v);
    const bool isColored = leastChroma(color.L / 100) <= chroma / 100;
    HclColor &bin = bins[isColored ? binOfHue(std::atan2(color.v, color.u)) : GrayBin];
    const Shares shares(bin.count, entry.count);
    bin.color.L = shares.old * bin.color.L + shares.added * color.L;
    if (isColored) {
        bin.color.u = shares.old * bin.color.u + shares.added * color.u;
        bin.color.v = shares.old * bin.color.v + shares.added * color.v;
    }
    bin.color.alpha = 1;
    bin.count += entry.count;
}

HclColors fail(const char *reason)
{
    std::fprintf(stderr, "\n%s\n", reason);
    return {};
}

} // namespace

void HclColor::updateFromColor()
{
    const LCh polar = lchFromLuv(color);
    hue = hueInDegrees(polar.h);
    saturation = polar.C / 100;
    luminosity = polar.L / 100;
}

HclColors createColorSpectrum(const BitmapView &bitmap)
{
    const ColorHistogram histogram = createColorHistogram(bitmap);
    return histogram.isEmpty() ? HclColors() : createColorSpectrumFromHistogram(histogram);
}

HclColors createColorSpectrumFromHistogram(const ColorHistogram &histogram)
{
    if (histogram.isEmpty()) {
        return fail("bad color spectrum parameter");
    }
    auto bins = HclColors::zeroed(SpectrumSize);
    if (bins.isEmpty()) {
        return fail("out of memory making color spectrum");
    }
    for (const ColorHistogramEntry &entry : histogram) {
        if (entry.count != 0) {
            addToSpectrum(bins, entry);
        }
    }
    for (HclColor &bin : bins) {
        if (bin.count != 0) {
            bin.updateFromColor();
        }
    }
    return bins;
}
