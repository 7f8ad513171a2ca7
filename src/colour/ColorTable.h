// The table in which the histogram counts: a hash of 65,536 chains, the newest colour of each at
// its head.
//
// Only the marks of the chains in use are cleared when the table is made, 8 kilobytes of them: the
// heads of the others are never read. For icons, that is most of the work of making one.

#pragma once

#include "colour/ColorHistogram.h"
#include "colour/HeapArray.h"

#include <array>
#include <cstddef>
#include <cstdint>

class ColorTable final
{
public:
    static constexpr std::uint32_t BucketCount = 65536;

    // False when there is no memory for it; nothing else may then be called.
    bool allocate();

    // Adds to the count of a colour. False when there is no memory for another colour; what was
    // counted before stays.
    bool add(std::uint32_t bucket, std::uint8_t red, std::uint8_t green, std::uint8_t blue,
        std::uint64_t weight);

    // Number of colours.
    std::size_t size() const { return _size; }
    // Every colour, chain by chain, each from its head, into size() entries.
    void copyTo(ColorHistogramEntry *entries) const;

private:
    struct Node
    {
        ColorHistogramEntry entry;
        std::uint32_t next = 0;
    };

    static constexpr std::uint32_t End = UINT32_MAX;
    static constexpr std::size_t FirstCapacity = 1024;
    static constexpr std::uint32_t BitsPerWord = 64;

    std::uint32_t head(std::uint32_t bucket) const;
    bool grow();

    std::array<std::uint64_t, BucketCount / BitsPerWord> _used {};
    HeapArray<std::uint32_t> _heads;
    HeapArray<Node> _nodes;
    std::size_t _size = 0;
};
