// A picture in which one can see whether the order by colour is a good one: every icon in that
// order, row by row, each with its colours beside it and its key below.

#pragma once

#include "commands/MeasuredFile.h"

#include <vector>

// What could not be measured is left out. Null when nothing is left, or when there is too much for
// one picture.
QImage contactSheet(const std::vector<MeasuredFile> &files);
