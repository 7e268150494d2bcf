#include "compare/StructureComparison.h"

#include "compare/Alignment.h"
#include "compare/OneSidedRows.h"

namespace tavrel::compare {

namespace {

constexpr int kIndexColumns = 5;
constexpr const char* kEqual = "두 DB의 구조가 일치 합니다.";
constexpr const char* kFound = "건의 다른곳이 발견 되었습니다.";

/// Phases 1 and 2: the rows of side A that side B does not have, then the other way round.
void DropRowsOfOneSide(WorkbenchControls& controls) {
    grid::ResultGrid& grid = *controls.spList;
    const int rows = grid.DataRowCount();
    for (const int offset : {0, grid::kSideBOffset}) {
        PhaseProgress progress(*controls.ProgressBar1[0], rows);
        DropOneSidedRows(grid, offset, rows, progress);
        progress.Finish();
        controls.ProgressBar1[1]->Advance();
    }
    grid.SetRowCount(grid.DataRowCount());
}

Alignment RunPass(WorkbenchControls& controls) {
    grid::ResultGrid& grid = *controls.spList;
    const int rows = grid.DataRowCount();
    const int columns = controls.Check1[1]->Value() == 1 ? kIndexColumns : grid::kSideColumns;
    grid.SetComparedColumns(columns);
    PhaseProgress progress(*controls.ProgressBar1[0], rows);
    Alignment alignment = Align(grid, rows, columns, progress);
    ApplyAlignment(grid, alignment);
    progress.Finish();
    controls.ProgressBar1[1]->Advance();
    grid.SetRowCount(grid.DataRowCount());
    return alignment;
}

}  // namespace

std::string DifferenceMessage(int differences) {
    return differences == 0 ? kEqual : std::to_string(differences) + kFound;
}

int CompareSnapshots(WorkbenchControls& controls) {
    grid::ResultGrid& grid = *controls.spList;
    if (controls.Check1[0]->Value() != 0) {
        DropRowsOfOneSide(controls);
    } else {
        controls.ProgressBar1[1]->Advance(2);
    }
    const Alignment alignment = RunPass(controls);
    const int differences = static_cast<int>(alignment.differing.size());
    if (differences != 0 && controls.Check1[2]->Value() == 1) {
        ShowDifferencesOnly(grid);
    }
    controls.messages->Say(DifferenceMessage(differences));
    if (differences != 0) {
        grid.ActivateCell(grid::kCompareColumn, alignment.differing.front().row);
        grid.SetFocus();
    }
    return differences;
}

void ShowDifferencesOnly(grid::ResultGrid& grid) {
    const int rows = grid.DataRowCount();
    for (int row = 1; row <= rows; ++row) {
        if (grid.Id(grid::kCompareColumn, row) == grid::kEmptyText) {
            grid.SetFormatRow(row);
            grid.SetRowHidden(true);
        }
    }
}

}  // namespace tavrel::compare
