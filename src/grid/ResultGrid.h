// The result grid as a plain model: both snapshots side by side, with marks, hidden rows and an active cell.
//
// Rows and columns count from 1.  A cell outside the grid reads as not there; writing to it does nothing.
// Texts are kept once each (TextPool), columns one after the other, so that moving, searching and comparing
// touch numbers only.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "grid/GridLayout.h"
#include "grid/GridObserver.h"
#include "grid/TextPool.h"

namespace tavrel::grid {

/// Header cells joined into one.
struct JoinedCells {
    int column = 0;
    int row = 0;  ///< kTopHeaderRow or kCaptionHeaderRow
    int columns = 1;
    int rows = 1;
    bool operator==(const JoinedCells&) const = default;
};

class ResultGrid {
  public:
    ResultGrid() = default;
    ResultGrid(const ResultGrid&) = delete;
    ResultGrid& operator=(const ResultGrid&) = delete;

    // ---- rows
    [[nodiscard]] int RowCount() const { return rowCount_; }
    /// Rows beyond the new count go with text, marks, colours and hidden state; rows that come are empty. The
    /// active cell stays within the rows (row 1 in an empty grid).
    void SetRowCount(int rows);
    /// The last row that holds any text; 0 when none.
    [[nodiscard]] int DataRowCount() const;

    // ---- texts
    /// Row kTopHeaderRow and kCaptionHeaderRow write to the header.
    void PutText(int column, int row, std::string_view text);
    void PutText(int column, int row, std::int64_t number);
    /// True when the cell was read.
    [[nodiscard]] bool GetText(int column, int row, std::string& text) const;
    /// The cell's text; empty outside the grid.  Valid until RowCount becomes 0 (header: until written).
    [[nodiscard]] std::string_view Text(int column, int row) const;
    /// Number of the cell's text and of its upper-case form; kEmptyText outside the rows.
    [[nodiscard]] TextId Id(int column, int row) const;
    [[nodiscard]] TextId FoldedId(int column, int row) const { return pool_.Folded(Id(column, row)); }
    /// Every id is below this.
    [[nodiscard]] std::size_t IdLimit() const { return pool_.Size(); }
    /// First row r with afterRow < r <= lastRow whose whole cell equals the text, letter case ignored; else
    /// -1.
    [[nodiscard]] int FindInColumn(int column, int afterRow, int lastRow, std::string_view text,
                                   int flags = 0) const;

    // ---- blocks (texts only: marks and colours belong to the place, not to the text)
    /// Moves the texts so that the first cell lands on the target.  Cells left behind become empty; what
    /// would land outside the grid is lost.  Source and target may overlap.
    void MoveBlock(int column1, int row1, int column2, int row2, int targetColumn, int targetRow);
    /// Empties the block.  The flag is always false.
    void ClearBlock(int column1, int row1, int column2, int row2, bool flag = false);

    // ---- active cell and focus
    void ActivateCell(int column, int row);
    [[nodiscard]] int ActiveColumn() const { return activeColumn_; }
    [[nodiscard]] int ActiveRow() const { return activeRow_; }
    void SetFocus();

    // ---- formatting: the selection, then a setting for it.  -1 is every column or row.
    void SetFormatCol(int column) { formatCol_ = column; }
    void SetFormatRow(int row) { formatRow_ = row; }
    void SetFormatCol2(int column) { formatCol2_ = column; }
    void SetFormatRow2(int row) { formatRow2_ = row; }
    /// On: the selection is the block up to FormatCol2, FormatRow2; off: the one cell.
    void SetBlockMode(bool on) { blockMode_ = on; }
    /// What a comparison has found; cells are painted from it.  A selection of every row is those there are.
    void SetCellMark(CellMark mark);
    [[nodiscard]] CellMark Mark(int column, int row) const;
    /// By the mark, else by the column.
    [[nodiscard]] CellRole Role(int column, int row) const;
    /// Paints over the colour that the role has.
    void SetCellBackColor(Colour colour);
    void SetRowHidden(bool hidden);
    [[nodiscard]] Colour BackColor(int column, int row) const;
    [[nodiscard]] Colour TextColor(int column) const { return ColoursOf(LayoutOf(column).role).light.text; }
    [[nodiscard]] bool RowHidden(int row) const;

    // ---- settings of the start-up
    /// Locked cells cannot be edited.  The window edits none, so that only tests ask which are locked.
    void SetCellLocked(bool locked);
    [[nodiscard]] bool CellLocked(int column, int row) const;
    /// 1: equal texts one below the other in the column FormatCol show as one cell.
    void SetColumnMerge(int mode);
    [[nodiscard]] int ColumnMerge(int column) const { return columnMerge_[Place(column)]; }
    /// 1: the columns that merge do so; 0: none does.
    void SetMerging(int mode) { merging_ = mode; }
    [[nodiscard]] int Merging() const { return merging_; }

    // ---- header
    void JoinCells(int column, int row, int columns, int rows);
    [[nodiscard]] const std::vector<JoinedCells>& Joins() const { return joins_; }
    [[nodiscard]] double ColumnWidth(int column) const { return LayoutOf(column).width; }
    [[nodiscard]] bool ColumnHidden(int column) const { return LayoutOf(column).hidden; }

    // ---- what the marks in the grid come from
    /// The columns of a side, from the first on, that the last comparison looked at; all of them before one.
    void SetComparedColumns(int columns) { comparedColumns_ = columns; }
    [[nodiscard]] int ComparedColumns() const { return comparedColumns_; }

    // ---- showing
    void SetRepaint(bool on);
    [[nodiscard]] bool Repaint() const { return repaint_; }
    /// At most one observer, not owned; null takes it away.
    void Observe(GridObserver* observer) { observer_ = observer; }

  private:
    static constexpr Colour kDefaultColour = UINT32_MAX;

    static constexpr int kEveryRow = INT32_MAX;

    static std::array<std::string, kColumnCount + 1> DefaultCaptions();
    static std::array<Colour, kColumnCount + 1> NoColours() {
        std::array<Colour, kColumnCount + 1> none;
        none.fill(kDefaultColour);
        return none;
    }
    static bool IsColumn(int column) { return column >= 1 && column <= kColumnCount; }
    static std::size_t Place(int column) { return static_cast<std::size_t>(column); }
    [[nodiscard]] bool IsCell(int column, int row) const {
        return IsColumn(column) && row >= 1 && row <= rowCount_;
    }
    [[nodiscard]] CellRange Clipped(CellRange range) const;
    [[nodiscard]] CellRange Selection() const;
    [[nodiscard]] bool Watched() const { return observer_ != nullptr && repaint_; }
    void Changed(const CellRange& range) const;
    void MoveCells(int column, int firstRow, int lastRow, int targetColumn, int targetRow);
    void PutHeader(int column, int row, std::string_view text);

    int rowCount_ = 0;
    int comparedColumns_ = kSideColumns;
    TextPool pool_;
    std::array<std::vector<TextId>, kColumnCount + 1> texts_;    ///< [column][row - 1]
    std::array<std::vector<CellMark>, kColumnCount + 1> marks_;  ///< as far down as a cell was marked
    std::array<std::vector<Colour>, kColumnCount + 1> colours_;  ///< as far down as a cell was coloured
    std::array<Colour, kColumnCount + 1> columnColours_ = NoColours();
    std::vector<bool> hidden_;  ///< as far down as a row was hidden
    std::array<std::string, kColumnCount + 1> topHeader_;
    std::array<std::string, kColumnCount + 1> captions_ = DefaultCaptions();
    std::vector<JoinedCells> joins_;
    std::array<int, kColumnCount + 1> columnMerge_{};
    struct LockedRange {
        CellRange range;
        bool locked;
    };
    std::vector<LockedRange> locks_;  ///< the last one that holds a cell counts
    int merging_ = 0;
    int activeColumn_ = 1;
    int activeRow_ = 1;
    int formatCol_ = 1;
    int formatRow_ = 1;
    int formatCol2_ = 1;
    int formatRow2_ = 1;
    bool blockMode_ = false;
    bool repaint_ = true;
    GridObserver* observer_ = nullptr;
};

}  // namespace tavrel::grid
