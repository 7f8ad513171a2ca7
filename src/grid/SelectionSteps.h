// Where the selection goes by the arrow keys and their like: from icon to icon, over empty cells.

#pragma once

#include "grid/Coords.h"

#include <functional>
#include <optional>

class GridLayout;

namespace SelectionSteps {

enum class Step { Left, Right, Up, Down, First, Last, PageUp, PageDown };

// Empty for a key that does not move the selection. Home and End go to the first and the last icon
// of the row, Page Up and Down to those of the column.
std::optional<Step> stepOf(int key);

// The cell of the next icon in that direction, row and column set. Sideways it goes on in the next
// row, up and down in the next column, and stays where no icon is left. Without a cell to start
// from, the first icon of the grid; the same cell when there is no icon at all.
Coords moved(const Coords &from, Step step, const GridLayout &layout,
    const std::function<bool(quint64 row, quint64 column)> &isOccupied);

} // namespace SelectionSteps
