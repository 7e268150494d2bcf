// Leaving out the rows whose key exists on one side only.
#pragma once

#include "compare/PhaseProgress.h"
#include "grid/ResultGrid.h"

namespace tavrel::compare {

/// Takes the rows 1 to `rows` of the side at `offset` (0 or grid::kSideBOffset) whose key the other side does
/// not have, letter case ignored, and moves up what is below them.  Ends at the first row without key; what
/// lies below that moves up all the same.
void DropOneSidedRows(grid::ResultGrid& grid, int offset, int rows, PhaseProgress& progress);

}  // namespace tavrel::compare
