// Turns two independent snapshots in the grid into a side-by-side comparison.
#pragma once

#include "workbench/WorkbenchControls.h"

namespace tavrel::workbench {

/// Drops rows of one side only when Check1(0) asks for it, marks and paints what differs, realigns the sides,
/// reports the number of marked rows in a message box and returns it.  Time grows with the number of rows,
/// whatever they hold.
int CompareSnapshots(WorkbenchControls& controls);

/// Hides the rows without mark.
void ShowDifferencesOnly(grid::ResultGrid& grid);

}  // namespace tavrel::workbench
