#include "colour/ColorTable.h"

#include <algorithm>
#include <bit>

bool ColorTable::allocate()
{
    _heads = HeapArray<std::uint32_t>::uninitialized(BucketCount);
    return !_heads.isEmpty();
}

std::uint32_t ColorTable::head(std::uint32_t bucket) const
{
    const bool isUsed = (_used[bucket / BitsPerWord] >> (bucket % BitsPerWord) & 1) != 0;
    return isUsed ? _heads[bucket] : End;
}

bool ColorTable::add(std::uint32_t bucket, std::uint8_t red, std::uint8_t green, std::uint8_t blue,
    std::uint64_t weight)
{
    const std::uint32_t first = head(bucket);
    for (std::uint32_t at = first; at != End; at = _nodes[at].next) {
        ColorHistogramEntry &entry = _nodes[at].entry;
        if (entry.red == red && entry.green == green && entry.blue == blue) {
            entry.count += weight;
            return true;
        }
    }
    if (_size == _nodes.size() && !grow()) {
        return false;
    }
    _nodes[_size] = { { red, green, blue, UINT8_MAX, weight }, first };
    _heads[bucket] = std::uint32_t(_size);
    _used[bucket / BitsPerWord] |= std::uint64_t(1) << (bucket % BitsPerWord);
    ++_size;
    return true;
}

bool ColorTable::grow()
{
    auto larger = HeapArray<Node>::uninitialized(std::max(FirstCapacity, 2 * _nodes.size()));
    if (larger.isEmpty()) {
        return false;
    }
    std::copy(_nodes.begin(), _nodes.end(), larger.begin());
    _nodes.swap(larger);
    return true;
}

void ColorTable::copyTo(ColorHistogramEntry *entries) const
{
    for (std::uint32_t word = 0; word < _used.size(); ++word) {
        for (std::uint64_t bits = _used[word]; bits != 0; bits &= bits - 1) {
            const std::uint32_t bucket = word * BitsPerWord + std::uint32_t(std::countr_zero(bits));
            for (std::uint32_t at = _heads[bucket]; at != End; at = _nodes[at].next) {
                *entries++ = _nodes[at].entry;
            }
        }
    }
}
