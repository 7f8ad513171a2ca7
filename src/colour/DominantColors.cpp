#include "colour/DominantColors.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double RareShare = 0.005;

// Truncates the difference, so that weights that differ by less than 1 are equal. Such a comparison
// is not transitive, which std::sort does not survive; qsort may leave any order, but does.
int compareWeights(const void *a, const void *b)
{
    const double difference =
        **static_cast<const double *const *>(b) - **static_cast<const double *const *>(a);
    return int(std::clamp(difference, double(INT_MIN), double(INT_MAX)));
}

// The mean of both, counted together. Hue, saturation and luminosity are left for later.
void fold(HclColor &into, const HclColor &other)
{
    const std::uint64_t count = into.count + other.count;
    const double ownShare = double(into.count) / double(count);
    const double otherShare = double(other.count) / double(count);
    into.color = { ownShare * into.color.L + otherShare * other.color.L,
        ownShare * into.color.u + otherShare * other.color.u,
        ownShare * into.color.v + otherShare * other.color.v, 1 };
    into.count = count;
}

void foldGray(HclColor &into, const HclColor &other)
{
    fold(into, other);
    into.color.u = 0;
    into.color.v = 0;
}

} // namespace

std::size_t SpectrumReduction::sortByWeight(HclColors &bins)
{
    // Pointers to the weights are sorted in the place of the bins, a twelfth of their size.
    std::array<double, SpectrumSize> weights;
    std::array<const double *, SpectrumSize> order;
    for (std::size_t i = 0; i < SpectrumSize; ++i) {
        weights[i] = bins[i].weight();
        order[i] = &weights[i];
    }
    std::qsort(order.data(), order.size(), sizeof(order[0]), compareWeights);

    // Pure black weighs nothing, like a bin without pixels, and would be lost among those.
    std::array<HclColor, SpectrumSize> sorted;
    std::size_t used = 0;
    for (const double *weight : order) {
        const HclColor &bin = bins[std::size_t(weight - weights.data())];
        if (bin.count != 0) {
            sorted[used++] = bin;
        }
    }
    std::copy_n(sorted.begin(), used, bins.begin());
    std::fill(bins.begin() + used, bins.end(), HclColor());
    return used;
}

std::uint32_t SpectrumReduction::mergeAlike(
    HclColors &bins, std::size_t used, double minSaturation, double deltaE)
{
    std::uint32_t total = 0;
    for (std::size_t i = 0; i < used; ++i) {
        HclColor &bin = bins[i];
        if (bin.count == 0) {
            continue;
        }
        const bool isGray = bin.saturation < minSaturation;
        const std::uint64_t ownCount = bin.count;
        for (std::size_t j = i + 1; j < used; ++j) {
            HclColor &other = bins[j];
            if (other.count == 0 || (other.saturation < minSaturation) != isGray) {
                continue;
            }
            if (isGray) {
                foldGray(bin, other);
            } else if (deltaE
                > std::hypot(other.color.u - bin.color.u, other.color.v - bin.color.v)) {
                fold(bin, other);
            } else {
                continue;
            }
            other = {};
        }
        if (bin.count != ownCount) {
            bin.updateFromColor();
        }
        total += std::uint32_t(bin.count);
    }
    return total;
}

void SpectrumReduction::pruneRare(HclColors &bins, std::uint32_t total)
{
    for (HclColor &bin : bins) {
        // The quotient is of single precision, the limit is not.
        const float share = float(bin.count) / float(total);
        if (double(share) < RareShare) {
            bin = {};
        }
    }
}

HclColors createDominantColorsFromSpectrum(
    HclColors spectrum, std::ptrdiff_t count, double minSaturation, double deltaE)
{
    if (spectrum.size() != SpectrumSize || count < 1) {
        return {};
    }
    std::size_t used = SpectrumReduction::sortByWeight(spectrum);
    const std::uint32_t total =
        SpectrumReduction::mergeAlike(spectrum, used, minSaturation, deltaE);
    SpectrumReduction::pruneRare(spectrum, total);
    used = SpectrumReduction::sortByWeight(spectrum);

    // A block of its own: the spectrum is much larger than what is kept for every application.
    const std::size_t kept = std::min(used, std::size_t(count));
    auto colors = HclColors::uninitialized(kept);
    std::copy_n(spectrum.begin(), colors.size(), colors.begin());
    return colors;
}

HclColors createDominantColorsWithCount(const BitmapView &bitmap, std::ptrdiff_t count,
    double minSaturation, float /*minLuminosity*/, double deltaE)
{
    return createDominantColorsFromSpectrum(
        createColorSpectrum(bitmap), count, minSaturation, deltaE);
}
