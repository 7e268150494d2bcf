#include "app/logic/GridCommands.h"

#include "grid/CellText.h"

namespace tavrel::app {

namespace {

constexpr const char* kMark = "!";
constexpr const char* kNoMore = "더이상 비교결과에서 다른곳을 찾을 수 없습니다.";
constexpr int kNone = -1;
constexpr int kEvery = -1;

int MarkAbove(const grid::ResultGrid& grid) {
    for (int row = grid.ActiveRow() - 1; row >= 1; --row) {
        if (modCmpDB::GetCellText(grid, grid::kCompareColumn, row) == kMark) {
            return row;
        }
    }
    return kNone;
}

}  // namespace

void cmdMove_Click(std::int16_t index, grid::ResultGrid& grid, platform::MessageBox& messages) {
    const int target =
        index != 0 ? MarkAbove(grid)
                   : grid.FindInColumn(grid::kCompareColumn, grid.ActiveRow(), grid.DataRowCount(), kMark, 0);
    if (target > 0) {
        grid.ActivateCell(grid::kCompareColumn, target);
    } else {
        messages.Say(kNoMore);
    }
    grid.SetFocus();
}

void InitGrid(grid::ResultGrid& grid) {
    constexpr int kSideB = grid::kSideBOffset;
    grid.SetRowCount(0);
    grid.JoinCells(0, grid::kTopHeaderRow, 1, 2);
    grid.JoinCells(grid::cell::kTable, grid::kTopHeaderRow, grid::kSideColumns, 1);
    grid.JoinCells(grid::kCompareColumn, grid::kTopHeaderRow, 1, 2);
    grid.JoinCells(grid::cell::kTable + kSideB, grid::kTopHeaderRow, grid::kSideColumns, 1);
    for (const int column : {grid::cell::kTable, grid::cell::kTable + kSideB}) {
        grid.SetFormatCol(column);
        grid.SetColumnMerge(1);
    }
    grid.SetMerging(1);
}

void LockCells(grid::ResultGrid& grid) {
    grid.SetFormatCol(kEvery);
    grid.SetFormatRow(kEvery);
    grid.SetCellLocked(true);
}

}  // namespace tavrel::app
