// The table in which the histogram counts: a hash of 65,536 chains, the newest colour of each at
// its head.
//
// In memory there are only as many chains as the colours need, and what shares one of them is told
// apart when the colours are handed out. An icon has some hundreds of colours, and eight threads
// that measure icons would otherwise keep two megabytes of heads, most of them empty.

#pragma once

#include "colour/ColorHistogram.h"
#include "colour/HeapArray.h"

#include <cstddef>
#include <cstdint>

class ColorTable final
{
public:
    static constexpr std::uint32_t BucketCount = 65536;

    // False when there is no memory for it; nothing else may then be called.
    bool allocate();

    // Adds to the count of a colour, which always comes with the same bucket. False when there is
    // no memory for another colour; what was counted before stays.
    bool add(std::uint32_t bucket, std::uint8_t red, std::uint8_t green, std::uint8_t blue,
        std::uint64_t weight);

    // Number of colours.
    std::size_t size() const { return _size; }
    // Every colour, bucket by bucket, the newest of each first. Empty when there is no memory.
    ColorHistogram histogram() const;

private:
    struct Node
    {
        ColorHistogramEntry entry;
        std::uint32_t next;
        std::uint32_t bucket;
    };

    static constexpr std::uint32_t End = UINT32_MAX;
    static constexpr std::size_t FirstCapacity = 256;

    std::uint32_t &headOf(std::uint32_t bucket);
    bool grow();
    void link(HeapArray<std::uint32_t> &heads);

    HeapArray<std::uint32_t> _heads;
    HeapArray<Node> _nodes;
    std::size_t _size = 0;
};
