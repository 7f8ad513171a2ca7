// Where the selection goes by the arrow keys and their like: from one lit icon to the next, over
// empty cells and over icons that the filter has dimmed.

#pragma once

#include "grid/layout/Coords.h"

#include <functional>
#include <optional>

class GridLayout;

namespace SelectionSteps {

enum class Step { Left, Right, Up, Down, First, Last, PageUp, PageDown };

// Empty for a key that does not move the selection. Home and End go to the first and the last icon
// of the row, Page Up and Down to those of the column.
std::optional<Step> stepOf(int key);

// Whether the cell holds an icon, and one that is not dimmed.
using IsLit = std::function<bool(quint64 row, quint64 column)>;

// The cell of the next lit icon in that direction, row and column set. Sideways it goes on in the
// next row, up and down in the next column, and stays where no lit icon is left. From anywhere but
// a lit icon it is the first one of the grid, row by row; empty when there is none.
Coords moved(const Coords &from, Step step, const GridLayout &layout, const IsLit &isLit);

} // namespace SelectionSteps
