#include "compare/OneSidedRows.h"

#include <vector>

namespace tavrel::compare {

namespace {

/// By the number of the upper-case key: whether a side has it.
std::vector<bool> KeysOf(const grid::ResultGrid& grid, int offset, int rows) {
    std::vector<bool> keys(grid.IdLimit());
    for (int row = 1; row <= rows; ++row) {
        keys[grid.FoldedId(offset + grid::cell::kKey, row)] = true;
    }
    return keys;
}

}  // namespace

void DropOneSidedRows(grid::ResultGrid& grid, int offset, int rows, PhaseProgress& progress) {
    const std::vector<bool> others = KeysOf(grid, grid::kSideBOffset - offset, rows);
    const int firstColumn = offset + 1;
    const int lastColumn = offset + grid::kSideColumns;
    int dropped = 0;
    int runStart = 1;  // first row not moved yet
    // Each run of rows that stay is moved at once, by as many rows as were dropped above it.
    const auto moveRun = [&](int lastRow) {
        if (dropped > 0 && runStart <= lastRow) {
            grid.MoveBlock(firstColumn, runStart, lastColumn, lastRow, firstColumn, runStart - dropped);
        }
    };
    for (int row = 1; row <= rows; ++row) {
        const grid::TextId key = grid.FoldedId(offset + grid::cell::kKey, row);
        if (key == grid::kEmptyText) {
            break;
        }
        if (!others[key]) {
            moveRun(row - 1);
            ++dropped;
            runStart = row + 1;
        }
        progress.Step();
    }
    moveRun(rows);
    grid.ClearBlock(firstColumn, rows - dropped + 1, lastColumn, rows, false);
}

}  // namespace tavrel::compare
