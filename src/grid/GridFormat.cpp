// The formatting half of ResultGrid: the selection and what is set for it.
#include <algorithm>

#include "grid/ResultGrid.h"

namespace tavrel::grid {

namespace {

constexpr int kEvery = -1;

}  // namespace

/// The selected columns and rows; a last row of INT_MAX stands for every row, those to come included.
CellRange ResultGrid::Selection() const {
    CellRange range{formatCol_, formatRow_, blockMode_ ? formatCol2_ : formatCol_,
                    blockMode_ ? formatRow2_ : formatRow_};
    if (formatCol_ == kEvery) {
        range.firstColumn = 1;
        range.lastColumn = kColumnCount;
    }
    if (formatRow_ == kEvery) {
        range.firstRow = 1;
        range.lastRow = kEveryRow;
    }
    range.firstColumn = std::max(range.firstColumn, 1);
    range.lastColumn = std::min(range.lastColumn, kColumnCount);
    range.firstRow = std::max(range.firstRow, 1);
    return range;
}

void ResultGrid::SetCellMark(CellMark mark) {
    const CellRange range = Clipped(Selection());
    if (range.firstRow > range.lastRow) {
        return;
    }
    for (int column = range.firstColumn; column <= range.lastColumn; ++column) {
        auto& cells = marks_[Place(column)];
        if (cells.size() < Place(range.lastRow)) {
            cells.resize(Place(range.lastRow), CellMark::None);
        }
        std::fill(cells.begin() + (range.firstRow - 1), cells.begin() + range.lastRow, mark);
    }
    Changed(range);
}

CellMark ResultGrid::Mark(int column, int row) const {
    if (!IsColumn(column) || row < 1 || Place(row) > marks_[Place(column)].size()) {
        return CellMark::None;
    }
    return marks_[Place(column)][Place(row) - 1];
}

CellRole ResultGrid::Role(int column, int row) const {
    switch (Mark(column, row)) {
        case CellMark::Differs:
            return CellRole::Differs;
        case CellMark::OneSided:
            return CellRole::OneSided;
        case CellMark::None:
            break;
    }
    return IsColumn(column) ? LayoutOf(column).role : CellRole::Plain;
}

void ResultGrid::SetCellBackColor(Colour colour) {
    const CellRange range = Selection();
    const bool everyRow = range.lastRow == kEveryRow;
    const int lastRow = std::min(range.lastRow, rowCount_);
    for (int column = range.firstColumn; column <= range.lastColumn; ++column) {
        auto& cells = colours_[Place(column)];
        if (everyRow) {
            columnColours_[Place(column)] = colour;
            cells.clear();
        } else if (range.firstRow <= lastRow) {
            if (cells.size() < Place(lastRow)) {
                cells.resize(Place(lastRow), kDefaultColour);
            }
            std::fill(cells.begin() + (range.firstRow - 1), cells.begin() + lastRow, colour);
        }
    }
    Changed(Clipped(range));
}

Colour ResultGrid::BackColor(int column, int row) const {
    if (!IsColumn(column)) {
        return ColoursOf(CellRole::Plain).light.back;
    }
    const auto& cells = colours_[Place(column)];
    const bool coloured = row >= 1 && Place(row) <= cells.size() && cells[Place(row) - 1] != kDefaultColour;
    if (coloured) {
        return cells[Place(row) - 1];
    }
    const Colour ofColumn = columnColours_[Place(column)];
    return ofColumn != kDefaultColour ? ofColumn : ColoursOf(Role(column, row)).light.back;
}

void ResultGrid::SetRowHidden(bool hidden) {
    const CellRange rows = Clipped(Selection());
    if (rows.firstRow > rows.lastRow) {
        return;
    }
    if (hidden_.size() < Place(rows.lastRow)) {
        hidden_.resize(Place(rows.lastRow), false);
    }
    std::fill(hidden_.begin() + (rows.firstRow - 1), hidden_.begin() + rows.lastRow, hidden);
    if (Watched()) {
        observer_->RowsHiddenChanged(rows.firstRow, rows.lastRow);
    }
}

bool ResultGrid::RowHidden(int row) const {
    return row >= 1 && Place(row) <= hidden_.size() && hidden_[Place(row) - 1];
}

void ResultGrid::SetCellLocked(bool locked) {
    const CellRange range = Selection();
    const auto covered = [&range](const LockedRange& lock) {
        return lock.range.firstColumn >= range.firstColumn && lock.range.lastColumn <= range.lastColumn &&
               lock.range.firstRow >= range.firstRow && lock.range.lastRow <= range.lastRow;
    };
    std::erase_if(locks_, covered);
    locks_.push_back({range, locked});
}

bool ResultGrid::CellLocked(int column, int row) const {
    const auto holds = [column, row](const LockedRange& lock) {
        return column >= lock.range.firstColumn && column <= lock.range.lastColumn &&
               row >= lock.range.firstRow && row <= lock.range.lastRow;
    };
    const auto lock = std::find_if(locks_.rbegin(), locks_.rend(), holds);
    return lock != locks_.rend() && lock->locked;
}

void ResultGrid::SetColumnMerge(int mode) {
    const CellRange range = Selection();
    for (int column = range.firstColumn; column <= range.lastColumn; ++column) {
        columnMerge_[Place(column)] = mode;
    }
}

void ResultGrid::JoinCells(int column, int row, int columns, int rows) {
    const JoinedCells join{column, row, columns, rows};
    const auto sameCorner = [&join](const JoinedCells& other) {
        return other.column == join.column && other.row == join.row;
    };
    std::erase_if(joins_, sameCorner);
    joins_.push_back(join);
    if (Watched()) {
        observer_->HeaderChanged();
    }
}

std::array<std::string, kColumnCount + 1> ResultGrid::DefaultCaptions() {
    std::array<std::string, kColumnCount + 1> captions;
    for (int column = 0; column <= kColumnCount; ++column) {
        captions[Place(column)] = LayoutOf(column).caption;
    }
    return captions;
}

}  // namespace tavrel::grid
