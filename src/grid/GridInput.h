// What a layout is made from: the preferences, and the list that is shown.

#pragma once

#include "catalogue/AppArray.h"
#include "grid/GridLayout.h"

namespace GridInput {

// Registers the preferences of the layout.
void registerDefaults();
// The preferences in force.
GridSettings settings();
// The shape of a group's list.
GridContents contents(const AppArray &array, int group);
// The applications of the cells, row by row, null where a cell is empty.
AppList appsOfCells(const GridLayout &layout, const AppArray &array);

} // namespace GridInput
