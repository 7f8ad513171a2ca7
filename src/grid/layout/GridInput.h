// What a layout is made from: the preferences, and the list that is shown.

#pragma once

#include "catalogue/AppArray.h"
#include "grid/layout/GridLayout.h"

namespace GridInput {

// Registers the preferences of the layout.
void registerDefaults();
// The preferences in force.
GridSettings settings();
// Whether groups are in the order by colour.
bool isInColorOrder();
// Bands side by side read across, stacked bands read down: sets the reading order that goes with an
// orientation. False when it is set already.
bool readAlong(qint64 orientation);
// The shape of a group's list.
GridContents contents(const AppArray &array, int group);
// The applications of the cells, row by row, null where a cell is empty.
AppList appsOfCells(const GridLayout &layout, const AppArray &array);

} // namespace GridInput
