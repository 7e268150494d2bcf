// What differs at a cell, in words with both values.
#pragma once

#include <QString>

#include "grid/ResultGrid.h"

namespace tavrel::app {

/// For the mark: what differs in the row, a line for each cell with both values.  For a red cell: its own
/// line. For the field of a row that one side has alone: which side.  Empty for every other cell.
QString WordsForCell(const grid::ResultGrid& grid, int column, int row);

}  // namespace tavrel::app
