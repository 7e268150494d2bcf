// What the window does with the grid: preparing it, going from one marked row to the next.
#pragma once

#include <cstdint>

#include "grid/ResultGrid.h"
#include "platform/Dialogs.h"

namespace tavrel::app {

/// Index 0: the next marked row below the active cell, any other: the one above.  It becomes the active cell,
/// in the compare column; when there is none, a message says so.  The grid gets the focus either way.
void cmdMove_Click(std::int16_t index, grid::ResultGrid& grid, platform::MessageBox& messages);

/// The start-up settings of the grid: no rows, joined header cells, merged table names, locked cells.
void InitGrid(grid::ResultGrid& grid);
void LockCells(grid::ResultGrid& grid);

}  // namespace tavrel::app
