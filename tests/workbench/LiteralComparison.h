// The comparison step by step, as it is described: cell by cell through the grid, every search a scan.  What
// the fast code must give, cell for cell.
#pragma once

#include <string>

#include "grid/CellText.h"
#include "text/Case.h"
#include "workbench/WorkbenchControls.h"

namespace tavrel::workbench {

class LiteralComparison {
  public:
    explicit LiteralComparison(WorkbenchControls& controls)
        : controls_(controls), grid_(*controls.spList), bar_(*controls.ProgressBar1[0]) {}

    void Run() {
        platform::ProgressBar& overall = *controls_.ProgressBar1[1];
        if (controls_.Check1[0]->Value() == 0) {
            overall.Advance(2);
        } else {
            const int rows = grid_.DataRowCount();
            Drop(0, 12, rows);
            overall.Advance();
            Drop(12, 0, rows);
            overall.Advance();
            grid_.SetRowCount(grid_.DataRowCount());
        }
        Pass();
        overall.Advance();
        grid_.SetRowCount(grid_.DataRowCount());
        Report();
    }

  private:
    std::string Cell(int column, int row) const { return modCmpDB::GetCellText(grid_, column, row); }
    std::string Upper(int column, int row) const { return text::Upper(Cell(column, row)); }

    void Drop(int offset, int other, int rows) {
        bar_.SetMaximum(rows);
        bar_.SetValue(0);
        int row = 1;
        while (row <= rows) {
            const std::string key = Cell(offset + 11, row);
            if (key.empty()) {
                break;
            }
            if (grid_.FindInColumn(other + 11, 0, rows, key, 0) > 0) {
                ++row;
            } else if (row == rows) {
                grid_.ClearBlock(offset + 1, row, offset + 11, row, false);
                ++row;
            } else {
                grid_.MoveBlock(offset + 1, row + 1, offset + 11, rows, offset + 1, row);
            }
            bar_.Advance();
        }
    }

    bool Differs(int column, int row) const { return Upper(column, row) != Upper(column + 12, row); }

    void Pass() {
        end_ = grid_.DataRowCount();
        const int columns = controls_.Check1[1]->Value() == 1 ? 5 : 11;
        bar_.SetMaximum(end_);
        bar_.SetValue(0);
        for (int row = 1; row <= end_; ++row) {
            int column = 1;
            while (column <= columns && !Differs(column, row)) {
                ++column;
            }
            if (column <= columns) {
                Mark(row, columns);
            }
            bar_.Advance();
        }
    }

    void Mark(int row, int columns) {
        grid_.PutText(12, row, "!");
        ++count_;
        first_ = first_ == 0 ? row : first_;
        const std::string keyA = Cell(11, row);
        const std::string keyB = Cell(23, row);
        if (keyA == keyB) {
            Paint(row, columns);
        } else if (!keyA.empty() && !keyB.empty()) {
            LookAhead(row);
        }
    }

    void Paint(int row, int columns) {
        grid_.SetFormatRow(row);
        for (int column = 1; column <= columns; ++column) {
            if (Differs(column, row)) {
                grid_.SetFormatCol(column);
                grid_.SetCellBackColor(255);
                grid_.SetFormatCol(column + 12);
                grid_.SetCellBackColor(255);
            }
        }
    }

    void LookAhead(int row) {
        for (int k = row + 1; k <= end_; ++k) {
            if (Upper(11, row) == Upper(23, k)) {
                return Realign(0, 17, row, k);
            }
            if (Upper(11, k) == Upper(23, row)) {
                return Realign(12, 5, row, k);
            }
        }
    }

    void Realign(int offset, int painted, int row, int k) {
        grid_.SetRowCount(grid_.RowCount() + k - row);
        grid_.MoveBlock(offset + 1, row, offset + 11, end_, offset + 1, k);
        grid_.SetFormatCol(painted);
        grid_.SetFormatCol2(painted);
        grid_.SetFormatRow(row);
        grid_.SetFormatRow2(k - 1);
        grid_.SetBlockMode(true);
        grid_.SetCellBackColor(0xFFC0C0);
        grid_.SetBlockMode(false);
        end_ += k - row;
        bar_.SetMaximum(end_);
    }

    void Report() {
        if (count_ == 0) {
            controls_.messages->Say("두 DB의 구조가 일치 합니다.");
            return;
        }
        if (controls_.Check1[2]->Value() == 1) {
            for (int row = 1; row <= grid_.DataRowCount(); ++row) {
                if (Cell(12, row).empty()) {
                    grid_.SetFormatRow(row);
                    grid_.SetRowHidden(true);
                }
            }
        }
        controls_.messages->Say(std::to_string(count_) + "건의 다른곳이 발견 되었습니다.");
        grid_.ActivateCell(12, first_);
        grid_.SetFocus();
    }

    WorkbenchControls& controls_;
    grid::ResultGrid& grid_;
    platform::ProgressBar& bar_;
    int end_ = 0;
    int count_ = 0;
    int first_ = 0;
};

}  // namespace tavrel::workbench
