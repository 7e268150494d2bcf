#include "workbench/StructureComparison.h"

#include "compare/Alignment.h"
#include "compare/ComparisonResult.h"
#include "compare/OneSidedRows.h"

namespace tavrel::workbench {

namespace {

/// Phases 1 and 2: the rows of side A that side B does not have, then the other way round.
void DropRowsOfOneSide(WorkbenchControls& controls) {
    grid::ResultGrid& grid = *controls.spList;
    const int rows = grid.DataRowCount();
    for (const int offset : {0, grid::kSideBOffset}) {
        compare::PhaseProgress progress(*controls.ProgressBar1[0], rows);
        compare::DropOneSidedRows(grid, offset, rows, progress);
        progress.Finish();
        controls.ProgressBar1[1]->Advance();
    }
    grid.SetRowCount(grid.DataRowCount());
}

compare::Alignment RunPass(WorkbenchControls& controls) {
    grid::ResultGrid& grid = *controls.spList;
    const int rows = grid.DataRowCount();
    const int columns = controls.Check1[1]->Value() == 1 ? grid::kIndexColumns : grid::kSideColumns;
    grid.SetComparedColumns(columns);
    compare::PhaseProgress progress(*controls.ProgressBar1[0], rows);
    compare::Alignment alignment = compare::Align(grid, rows, columns, progress);
    compare::ApplyAlignment(grid, alignment);
    progress.Finish();
    controls.ProgressBar1[1]->Advance();
    grid.SetRowCount(grid.DataRowCount());
    return alignment;
}

}  // namespace

int CompareSnapshots(WorkbenchControls& controls) {
    grid::ResultGrid& grid = *controls.spList;
    if (controls.Check1[0]->Value() != 0) {
        DropRowsOfOneSide(controls);
    } else {
        controls.ProgressBar1[1]->Advance(2);
    }
    const compare::Alignment alignment = RunPass(controls);
    const int differences = static_cast<int>(alignment.differing.size());
    if (differences != 0 && controls.Check1[2]->Value() == 1) {
        ShowDifferencesOnly(grid);
    }
    controls.messages->Say(compare::DifferenceMessage(differences));
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

}  // namespace tavrel::workbench
