// Turns two independent snapshots in the grid into a side-by-side comparison.
#pragma once

#include <string>

#include "compare/WorkbenchControls.h"

namespace tavrel::compare {

/// Drops rows of one side only when Check1(0) asks for it, marks and paints what differs, realigns the sides,
/// reports the number of marked rows in a message box and returns it.  Time grows with the number of rows,
/// whatever they hold.
int CompareSnapshots(WorkbenchControls& controls);

/// What a comparison says at its end.
std::string DifferenceMessage(int differences);

/// Hides the rows without mark.
void ShowDifferencesOnly(grid::ResultGrid& grid);

}  // namespace tavrel::compare
