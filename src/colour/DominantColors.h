// Which few colours a bitmap is made of, the ones that stand out most first.
//
// Its spectrum is sorted by weight, colours that look alike are merged into the weightier one, and
// what covers next to nothing is dropped. May be called from any thread.

#pragma once

#include "colour/ColorSpectrum.h"

struct BitmapView;

// At most `count` colours by falling weight; none when nothing could be measured or count is below
// 1. Colours whose saturation is below minSaturation are grey, and all greys become one; coloured
// ones are merged when their u, v lie less than deltaE apart. minLuminosity is not looked at:
// whether a colour is dark makes no difference here.
HclColors createDominantColorsWithCount(const BitmapView &bitmap, std::ptrdiff_t count,
    double minSaturation, float minLuminosity, double deltaE);

// The same of a spectrum, which is used up.
HclColors createDominantColorsFromSpectrum(
    HclColors spectrum, std::ptrdiff_t count, double minSaturation, double deltaE);

// The steps of it, on a whole spectrum.
namespace SpectrumReduction {

// By falling weight, bins without pixels last. Returns how many have pixels. Weights that differ by
// less than 1 count as equal.
std::size_t sortByWeight(HclColors &bins);
// Folds what looks alike into the bin that comes first; the others are cleared. The first `used`
// bins are the ones with pixels. Returns the sum of all counts.
std::uint32_t mergeAlike(HclColors &bins, std::size_t used, double minSaturation, double deltaE);
// Clears what covers less than half a per cent of the total.
void pruneRare(HclColors &bins, std::uint32_t total);

} // namespace SpectrumReduction
