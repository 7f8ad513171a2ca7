// Where in the favourites an icon goes that is dropped, or moved by a key.

#pragma once

#include "grid/layout/Coords.h"
#include "grid/layout/SelectionSteps.h"

#include <QtGlobal>

#include <optional>

class GridLayout;

struct DropPlace
{
    // The end of a list of whatever length; the catalogue clamps it.
    static constexpr qsizetype AtTheEnd = 0x7fffffff;

    // A bunch of its own, before the bunch that has this number now.
    bool isNewBunch = false;
    qsizetype bunch = 0;
    // In the bunch: before the application that stands there now.
    qsizetype index = 0;

    // Of a drop: a cell gives its own place, the rest of a band its front in the top margin and its
    // end elsewhere, a gap or an outer margin a new bunch. Nothing where there is none of these.
    static std::optional<DropPlace> ofDrop(const Coords &coords, const GridLayout &layout);

    // One cell farther from an application's cell to the left, right, up or down; past the outer
    // edge across the bands a new bunch. Nothing where there is no farther: there is no cell, the
    // application is the last of its bunch and would remain that, or is alone in a bunch at the
    // outer edge. Nothing for other steps.
    static std::optional<DropPlace> farther(
        const Coords &cell, SelectionSteps::Step step, const GridLayout &layout);

    friend bool operator==(const DropPlace &, const DropPlace &) = default;
};
