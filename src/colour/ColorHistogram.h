// The distinct colours of a bitmap, and how much of it each covers.

#pragma once

#include "colour/HeapArray.h"

#include <cstdint>

struct BitmapView;

struct ColorHistogramEntry
{
    std::uint8_t red, green, blue;
    // 255, whatever the alpha of the pixels was.
    std::uint8_t alpha;
    // Each pixel counts as much as its alpha says, 1 to 255; in a bitmap without alpha each counts
    // 1.
    std::uint64_t count;
};

using ColorHistogram = HeapArray<ColorHistogramEntry>;

// Reads every pixel, from the top row down; those with alpha 0 do not exist. Samples count as they
// are stored: a premultiplied colour is not divided by its alpha. The order of the entries depends
// on the pixels alone. Empty, with one line on standard error, when nothing is visible or memory
// runs out; empty for a bitmap that cannot be read. May be called from any thread.
ColorHistogram createColorHistogram(const BitmapView &bitmap);
