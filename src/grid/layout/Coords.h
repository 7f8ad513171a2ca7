// Where something lies in the grid: the answer of a hit test, and the form of a selection.
//
// A field that is not set holds NotFound. `spacer` counts the outer margin before the first band,
// the gaps between bands and the outer margin after the last; `margin` is 0 top, 1 right, 2 bottom,
// 3 left.

#pragma once

#include <QtGlobal>

struct Coords
{
    static constexpr quint64 NotFound = Q_UINT64_C(0x7fffffffffffffff);

    quint64 row = NotFound;
    quint64 col = NotFound;
    quint64 bunch = NotFound;
    quint64 spacer = NotFound;
    quint64 margin = NotFound;

    bool isEmpty() const { return *this == Coords(); }
    friend bool operator==(const Coords &, const Coords &) = default;
};
