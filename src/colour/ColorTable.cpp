#include "colour/ColorTable.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t ByteValues = 256;

// Where the items of each byte value begin when they stand in order; from the number of each.
using Places = std::array<std::uint32_t, ByteValues>;

Places placesFromCounts(const Places &counts)
{
    Places places {};
    for (std::size_t i = 1; i < places.size(); ++i) {
        places[i] = places[i - 1] + counts[i - 1];
    }
    return places;
}

} // namespace

bool ColorTable::allocate()
{
    auto heads = HeapArray<std::uint32_t>::uninitialized(FirstCapacity);
    link(heads);
    return !_heads.isEmpty();
}

// Chains every colour anew.
void ColorTable::link(HeapArray<std::uint32_t> &heads)
{
    _heads.swap(heads);
    std::fill(_heads.begin(), _heads.end(), End);
    for (std::size_t i = 0; i < _size; ++i) {
        std::uint32_t &head = headOf(_nodes[i].bucket);
        _nodes[i].next = head;
        head = std::uint32_t(i);
    }
}

std::uint32_t &ColorTable::headOf(std::uint32_t bucket)
{
    return _heads[bucket % _heads.size()];
}

bool ColorTable::add(std::uint32_t bucket, std::uint8_t red, std::uint8_t green, std::uint8_t blue,
    std::uint64_t weight)
{
    for (std::uint32_t at = headOf(bucket); at != End; at = _nodes[at].next) {
        ColorHistogramEntry &entry = _nodes[at].entry;
        if (entry.red == red && entry.green == green && entry.blue == blue) {
            entry.count += weight;
            return true;
        }
    }
    if (_size == _nodes.size() && !grow()) {
        return false;
    }
    std::uint32_t &head = headOf(bucket);
    _nodes[_size] = { { red, green, blue, UINT8_MAX, weight }, head, bucket };
    head = std::uint32_t(_size);
    ++_size;
    return true;
}

// Room for twice as many colours, and as many chains as that up to all of them.
bool ColorTable::grow()
{
    const std::size_t capacity = std::max(FirstCapacity, 2 * _nodes.size());
    auto nodes = HeapArray<Node>::uninitialized(capacity);
    if (nodes.isEmpty()) {
        return false;
    }
    std::copy(_nodes.begin(), _nodes.end(), nodes.begin());
    _nodes.swap(nodes);
    if (capacity <= BucketCount && capacity > _heads.size()) {
        auto heads = HeapArray<std::uint32_t>::uninitialized(capacity);
        // Without them the chains are longer, and that is all.
        if (!heads.isEmpty()) {
            link(heads);
        }
    }
    return true;
}

// Sorts by the low byte of the bucket, from the newest colour on, and then by the high one; each
// step keeps the order of what it finds equal.
ColorHistogram ColorTable::histogram() const
{
    auto order = HeapArray<std::uint32_t>::uninitialized(_size);
    auto histogram = order.isEmpty() ? ColorHistogram() : ColorHistogram::uninitialized(_size);
    if (histogram.isEmpty()) {
        return histogram;
    }
    Places lowCounts {};
    Places highCounts {};
    for (std::size_t i = 0; i < _size; ++i) {
        ++lowCounts[_nodes[i].bucket % ByteValues];
        ++highCounts[_nodes[i].bucket / ByteValues];
    }
    Places lowPlaces = placesFromCounts(lowCounts);
    for (std::size_t i = _size; i-- > 0;) {
        order[lowPlaces[_nodes[i].bucket % ByteValues]++] = std::uint32_t(i);
    }
    Places highPlaces = placesFromCounts(highCounts);
    for (const std::uint32_t i : order) {
        histogram[highPlaces[_nodes[i].bucket / ByteValues]++] = _nodes[i].entry;
    }
    return histogram;
}
