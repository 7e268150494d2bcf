#include "compare/Alignment.h"

#include <utility>

namespace tavrel::compare {

namespace {

using grid::TextId;

/// Where a key occurs on a side.  Questions come with ascending rows, so that each occurrence is passed once.
class KeyRows {
  public:
    KeyRows(const grid::ResultGrid& grid, int column, int rows)
        : first_(grid.IdLimit()), next_(static_cast<std::size_t>(rows) + 1) {
        for (int row = rows; row >= 1; --row) {
            const TextId key = grid.FoldedId(column, row);
            next_[static_cast<std::size_t>(row)] = first_[key];
            first_[key] = row;
        }
    }

    /// First row below `row` with the key; 0 when none.  REQUIRES: `row` never falls from call to call.
    int Below(TextId key, int row) {
        int& first = first_[key];
        while (first != 0 && first <= row) {
            first = next_[static_cast<std::size_t>(first)];
        }
        return first;
    }

  private:
    std::vector<int> first_;  ///< by the number of the upper-case key
    std::vector<int> next_;   ///< by row: the next row with the same key
};

/// One side on the way down.
class Side {
  public:
    Side(const grid::ResultGrid& grid, int offset, int rows)
        : grid_(grid), offset_(offset), keys_(grid, offset + grid::cell::kKey, rows) {}

    /// Row of the start that now lies at `row`; 0 when the side is blank there.
    [[nodiscard]] int SourceOf(int row) const { return row < blankUntil_ ? 0 : row - shift_; }
    [[nodiscard]] TextId Id(int column, int source) const { return grid_.Id(offset_ + column, source); }
    [[nodiscard]] TextId Folded(int column, int source) const {
        return grid_.FoldedId(offset_ + column, source);
    }
    [[nodiscard]] TextId Key(int source) const { return Id(grid::cell::kKey, source); }
    [[nodiscard]] int Offset() const { return offset_; }

    /// Rows from `source` down to the counterpart of the other side's row; 0 when there is none.
    int DistanceTo(TextId foldedKey, int source) {
        const int found = keys_.Below(foldedKey, source);
        return found == 0 ? 0 : found - source;
    }

    /// Opens `distance` blank rows at `row`, where `source` was.
    void MoveDown(int row, int source, int distance) {
        shift_ += distance;
        blankUntil_ = row + distance;
        shifts_.push_back({source, shift_});
    }
    std::vector<ShiftedFrom> TakeShifts() { return std::move(shifts_); }

  private:
    const grid::ResultGrid& grid_;
    int offset_;
    KeyRows keys_;
    int shift_ = 0;
    int blankUntil_ = 0;
    std::vector<ShiftedFrom> shifts_;
};

class Walk {
  public:
    Walk(const grid::ResultGrid& grid, int rows, int columns, PhaseProgress& progress)
        : columns_(columns),
          end_(rows),
          progress_(progress),
          a_(grid, 0, rows),
          b_(grid, grid::kSideBOffset, rows) {
        found_.rows = rows;
    }

    Alignment Run() {
        for (int row = 1; row <= end_; ++row) {
            Visit(row);
            progress_.Step();
        }
        found_.shiftsA = a_.TakeShifts();
        found_.shiftsB = b_.TakeShifts();
        return std::move(found_);
    }

  private:
    void Visit(int row) {
        const int sourceA = a_.SourceOf(row);
        const int sourceB = b_.SourceOf(row);
        const std::uint32_t differing = DifferingCells(sourceA, sourceB);
        if (differing == 0) {
            return;
        }
        const TextId keyA = a_.Key(sourceA);
        const TextId keyB = b_.Key(sourceB);
        found_.differing.push_back({row, keyA == keyB ? differing : 0});
        if (keyA != keyB && keyA != grid::kEmptyText && keyB != grid::kEmptyText) {
            LookAhead(row, sourceA, sourceB);
        }
    }

    [[nodiscard]] std::uint32_t DifferingCells(int sourceA, int sourceB) const {
        std::uint32_t differing = 0;
        for (int column = 1; column <= columns_; ++column) {
            const bool equal = a_.Id(column, sourceA) == b_.Id(column, sourceB) ||
                               a_.Folded(column, sourceA) == b_.Folded(column, sourceB);
            differing |= (equal ? 0U : 1U) << column;
        }
        return differing;
    }

    /// The nearer counterpart counts; at the same distance that of side A's row.
    void LookAhead(int row, int sourceA, int sourceB) {
        const int onB = b_.DistanceTo(a_.Folded(grid::cell::kKey, sourceA), sourceB);
        const int onA = a_.DistanceTo(b_.Folded(grid::cell::kKey, sourceB), sourceA);
        if (onB != 0 && (onA == 0 || onB <= onA)) {
            Realign(row, onB, a_, sourceA, b_);
        } else if (onA != 0) {
            Realign(row, onA, b_, sourceB, a_);
        }
    }

    void Realign(int row, int distance, Side& moved, int source, const Side& alone) {
        moved.MoveDown(row, source, distance);
        found_.oneSided.push_back({alone.Offset(), row, row + distance - 1});
        found_.grown += distance;
        end_ += distance;
        progress_.SetMaximum(end_);
    }

    int columns_;
    int end_;
    PhaseProgress& progress_;
    Side a_;
    Side b_;
    Alignment found_;
};

/// From the bottom up, so that every run moves to where nothing is any more; a column at a time, as the grid
/// keeps them.
void MoveSide(grid::ResultGrid& grid, int offset, const std::vector<ShiftedFrom>& shifts, int rows) {
    for (int column = offset + 1; column <= offset + grid::kSideColumns; ++column) {
        int last = rows;
        for (auto run = shifts.rbegin(); run != shifts.rend(); ++run) {
            if (run->row <= last) {
                grid.MoveBlock(column, run->row, column, last, column, run->row + run->shift);
            }
            last = run->row - 1;
        }
    }
}

void MarkDiffering(grid::ResultGrid& grid, const DifferingRow& row) {
    grid.SetFormatRow(row.row);
    for (int column = 1; column <= grid::kSideColumns; ++column) {
        if ((row.differing >> column & 1U) != 0) {
            grid.SetFormatCol(column);
            grid.SetCellMark(grid::CellMark::Differs);
            grid.SetFormatCol(column + grid::kSideBOffset);
            grid.SetCellMark(grid::CellMark::Differs);
        }
    }
}

void MarkOneSided(grid::ResultGrid& grid, const OneSidedBlock& block) {
    grid.SetFormatCol(block.offset + grid::cell::kField);
    grid.SetFormatCol2(block.offset + grid::cell::kField);
    grid.SetFormatRow(block.firstRow);
    grid.SetFormatRow2(block.lastRow);
    grid.SetBlockMode(true);
    grid.SetCellMark(grid::CellMark::OneSided);
    grid.SetBlockMode(false);
}

}  // namespace

Alignment Align(const grid::ResultGrid& grid, int rows, int columns, PhaseProgress& progress) {
    return Walk(grid, rows, columns, progress).Run();
}

void ApplyAlignment(grid::ResultGrid& grid, const Alignment& alignment) {
    grid.SetRowCount(grid.RowCount() + alignment.grown);
    MoveSide(grid, 0, alignment.shiftsA, alignment.rows);
    MoveSide(grid, grid::kSideBOffset, alignment.shiftsB, alignment.rows);
    // A block is marked when it opens, before the rows in it are looked at: a difference found there counts.
    for (const OneSidedBlock& block : alignment.oneSided) {
        MarkOneSided(grid, block);
    }
    for (const DifferingRow& differing : alignment.differing) {
        grid.PutText(grid::kCompareColumn, differing.row, kDifferenceMark);
        MarkDiffering(grid, differing);
    }
}

}  // namespace tavrel::compare
