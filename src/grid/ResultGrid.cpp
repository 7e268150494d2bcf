#include "grid/ResultGrid.h"

#include <algorithm>

namespace tavrel::grid {

namespace {

/// Drops what lies below a row, keeping what lies above.
template <typename T>
void Shorten(std::vector<T>& values, int rows) {
    if (values.size() > static_cast<std::size_t>(rows)) {
        values.resize(static_cast<std::size_t>(rows));
    }
}

}  // namespace

void ResultGrid::SetRowCount(int rows) {
    rows = std::max(rows, 0);
    for (int column = 1; column <= kColumnCount; ++column) {
        texts_[Place(column)].resize(static_cast<std::size_t>(rows), kEmptyText);
    }
    if (rows < rowCount_) {
        for (auto& column : marks_) {
            Shorten(column, rows);
        }
        for (auto& column : colours_) {
            Shorten(column, rows);
        }
        Shorten(hidden_, rows);
        activeRow_ = std::clamp(activeRow_, 1, std::max(rows, 1));
    }
    if (rows == 0) {
        pool_.Clear();
    }
    rowCount_ = rows;
    if (Watched()) {
        observer_->RowCountChanged();
    }
}

int ResultGrid::DataRowCount() const {
    std::size_t rows = 0;
    for (const auto& column : texts_) {
        auto last = column.size();
        while (last > rows && column[last - 1] == kEmptyText) {
            --last;
        }
        rows = std::max(rows, last);
    }
    return static_cast<int>(rows);
}

void ResultGrid::PutText(int column, int row, std::string_view text) {
    if (row < 0) {
        PutHeader(column, row, text);
    } else if (IsCell(column, row)) {
        texts_[Place(column)][Place(row) - 1] = pool_.Intern(text);
        Changed({column, row, column, row});
    }
}

void ResultGrid::PutText(int column, int row, std::int64_t number) {
    PutText(column, row, std::string_view(std::to_string(number)));
}

void ResultGrid::PutHeader(int column, int row, std::string_view text) {
    if (column < 0 || column > kColumnCount || (row != kTopHeaderRow && row != kCaptionHeaderRow)) {
        return;
    }
    (row == kTopHeaderRow ? topHeader_ : captions_)[Place(column)] = text;
    if (Watched()) {
        observer_->HeaderChanged();
    }
}

bool ResultGrid::GetText(int column, int row, std::string& text) const {
    const bool isHeader = row == kTopHeaderRow || row == kCaptionHeaderRow;
    const bool there = IsCell(column, row) || (isHeader && column >= 0 && column <= kColumnCount);
    if (there) {
        text = Text(column, row);
    }
    return there;
}

std::string_view ResultGrid::Text(int column, int row) const {
    if (IsCell(column, row)) {
        return pool_.Text(Id(column, row));
    }
    if (column < 0 || column > kColumnCount) {
        return {};
    }
    if (row == kTopHeaderRow) {
        return topHeader_[Place(column)];
    }
    return row == kCaptionHeaderRow ? std::string_view(captions_[Place(column)]) : std::string_view();
}

TextId ResultGrid::Id(int column, int row) const {
    return IsCell(column, row) ? texts_[Place(column)][Place(row) - 1] : kEmptyText;
}

int ResultGrid::FindInColumn(int column, int afterRow, int lastRow, std::string_view text,
                             int /*flags*/) const {
    const TextId folded = pool_.FindFolded(text);
    if (!IsColumn(column) || folded == TextPool::kUnknown) {
        return -1;
    }
    const auto& cells = texts_[Place(column)];
    for (int row = std::max(afterRow, 0) + 1; row <= std::min(lastRow, rowCount_); ++row) {
        if (pool_.Folded(cells[Place(row) - 1]) == folded) {
            return row;
        }
    }
    return -1;
}

CellRange ResultGrid::Clipped(CellRange range) const {
    return {.firstColumn = std::max(range.firstColumn, 1),
            .firstRow = std::max(range.firstRow, 1),
            .lastColumn = std::min(range.lastColumn, kColumnCount),
            .lastRow = std::min(range.lastRow, rowCount_)};
}

void ResultGrid::MoveBlock(int column1, int row1, int column2, int row2, int targetColumn, int targetRow) {
    const CellRange from = Clipped({column1, row1, column2, row2});
    if (from.firstRow > from.lastRow) {
        return;
    }
    const int right = targetColumn - column1;
    const int down = targetRow - row1;
    const int columns = from.lastColumn - from.firstColumn + 1;
    for (int i = 0; i < columns; ++i) {
        // To the right, the last column goes first: its target may be another one's source.
        const int column = right > 0 ? from.lastColumn - i : from.firstColumn + i;
        MoveCells(column, from.firstRow, from.lastRow, column + right, from.firstRow + down);
    }
    Changed(Clipped({from.firstColumn + std::min(right, 0), from.firstRow + std::min(down, 0),
                     from.lastColumn + std::max(right, 0), from.lastRow + std::max(down, 0)}));
}

void ResultGrid::MoveCells(int column, int firstRow, int lastRow, int targetColumn, int targetRow) {
    const int down = targetRow - firstRow;
    const int first = std::max(firstRow, 1 - down);
    const int last = std::min(lastRow, rowCount_ - down);
    auto& cells = texts_[Place(column)];
    const auto at = [&cells](int row) { return cells.begin() + (row - 1); };
    if (first > last || !IsColumn(targetColumn)) {
        std::fill(at(firstRow), at(lastRow) + 1, kEmptyText);
    } else if (targetColumn != column) {
        std::copy(at(first), at(last) + 1, texts_[Place(targetColumn)].begin() + (first + down - 1));
        std::fill(at(firstRow), at(lastRow) + 1, kEmptyText);
    } else if (down > 0) {
        std::copy_backward(at(first), at(last) + 1, at(last + down) + 1);
        std::fill(at(firstRow), at(std::min(lastRow, firstRow + down - 1)) + 1, kEmptyText);
    } else if (down < 0) {
        std::copy(at(first), at(last) + 1, at(first + down));
        std::fill(at(std::max(firstRow, lastRow + down + 1)), at(lastRow) + 1, kEmptyText);
    }
}

void ResultGrid::ClearBlock(int column1, int row1, int column2, int row2, bool /*flag*/) {
    const CellRange block = Clipped({column1, row1, column2, row2});
    if (block.firstRow > block.lastRow) {
        return;
    }
    for (int column = block.firstColumn; column <= block.lastColumn; ++column) {
        auto& cells = texts_[Place(column)];
        std::fill(cells.begin() + (block.firstRow - 1), cells.begin() + block.lastRow, kEmptyText);
    }
    Changed(block);
}

void ResultGrid::ActivateCell(int column, int row) {
    activeColumn_ = std::clamp(column, 1, kColumnCount);
    activeRow_ = std::clamp(row, 1, std::max(rowCount_, 1));
    if (Watched()) {
        observer_->ActiveCellChanged();
    }
}

void ResultGrid::SetFocus() {
    if (observer_ != nullptr) {
        observer_->FocusRequested();
    }
}

void ResultGrid::SetRepaint(bool on) {
    const bool wasOff = !repaint_;
    repaint_ = on;
    if (on && wasOff && observer_ != nullptr) {
        observer_->AllChanged();
    }
}

void ResultGrid::Changed(const CellRange& range) const {
    if (Watched() && range.firstRow <= range.lastRow && range.firstColumn <= range.lastColumn) {
        observer_->CellsChanged(range);
    }
}

}  // namespace tavrel::grid
