// The walk down both sides: which rows differ, in which cells, where one side moves down to meet its
// counterpart.
//
// Nothing is moved while walking.  Each side keeps a shift, the rows it has been moved down so far, so that
// the text of a row is found in the grid as it was at the start; the moves are applied afterwards, each cell
// once.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "compare/PhaseProgress.h"
#include "grid/ResultGrid.h"

namespace tavrel::compare {

inline constexpr std::string_view kDifferenceMark = "!";

/// A row that differs.
struct DifferingRow {
    int row = 0;                  ///< after all moves
    std::uint32_t differing = 0;  ///< bit c: the cells in column c of both sides differ
};

/// Rows that one side has alone, as a realignment found them.  Rows after all moves.
struct OneSidedBlock {
    int offset = 0;  ///< side that has them: 0 or grid::kSideBOffset
    int firstRow = 0;
    int lastRow = 0;
};

/// From a row of the start on, a side lies lower by `shift`.
struct ShiftedFrom {
    int row = 0;
    int shift = 0;
};

struct Alignment {
    std::vector<DifferingRow> differing;
    std::vector<OneSidedBlock> oneSided;
    std::vector<ShiftedFrom> shiftsA;  ///< downwards
    std::vector<ShiftedFrom> shiftsB;
    int rows = 0;   ///< rows of the start
    int grown = 0;  ///< rows that the realignments added
};

/// Walks the first `rows` rows, comparing the columns 1 to `columns` of each side.  Changes nothing in the
/// grid.
Alignment Align(const grid::ResultGrid& grid, int rows, int columns, PhaseProgress& progress);

/// Moves the rows and marks rows and cells.
void ApplyAlignment(grid::ResultGrid& grid, const Alignment& alignment);

}  // namespace tavrel::compare
