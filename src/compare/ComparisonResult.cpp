#include "compare/ComparisonResult.h"

#include <algorithm>

namespace tavrel::compare {

namespace {

namespace cell = grid::cell;

constexpr const char* kEqual = "두 DB의 구조가 일치 합니다.";
constexpr const char* kFound = "건의 다른곳이 발견 되었습니다.";

int GridRow(std::size_t index) {
    return static_cast<int>(index) + 1;
}

std::optional<SideCells> SideOrNothing(const grid::ResultGrid& grid, int offset, int row) {
    const SideCells cells = SideOf(grid, offset, row);
    const bool blank = std::ranges::all_of(cells, &std::string_view::empty) &&
                       grid.Id(offset + cell::kKey, row) == grid::kEmptyText;
    return blank ? std::nullopt : std::optional(cells);
}

std::uint32_t DifferingCells(const grid::ResultGrid& grid, int row) {
    std::uint32_t differing = 0;
    for (std::size_t i = 0; i < kCellCount; ++i) {
        if (grid.Mark(static_cast<int>(i) + 1, row) == grid::CellMark::Differs) {
            differing |= 1U << i;
        }
    }
    return differing;
}

OneSided SideAlone(const grid::ResultGrid& grid, int row) {
    if (grid.Mark(cell::kField, row) == grid::CellMark::OneSided) {
        return OneSided::A;
    }
    const bool ofB = grid.Mark(cell::kField + grid::kSideBOffset, row) == grid::CellMark::OneSided;
    return ofB ? OneSided::B : OneSided::None;
}

}  // namespace

SideCells SideOf(const grid::ResultGrid& grid, int offset, int row) {
    SideCells cells;
    for (std::size_t i = 0; i < kCellCount; ++i) {
        cells[i] = grid.Text(offset + static_cast<int>(i) + 1, row);
    }
    return cells;
}

std::string DifferenceMessage(int differences) {
    return differences == 0 ? kEqual : std::to_string(differences) + kFound;
}

std::vector<std::string_view> ResultRow::DifferingNames() const {
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < kCellCount; ++i) {
        if (Differs(i)) {
            names.push_back(kCellNames[i]);
        }
    }
    return names;
}

std::string_view ResultRow::OneSidedName() const {
    constexpr std::array<std::string_view, 3> kNames = {"", "a", "b"};
    return kNames[static_cast<std::size_t>(oneSided)];
}

ComparisonResult::ComparisonResult(std::shared_ptr<const grid::ResultGrid> grid, int differences)
    : grid_(std::move(grid)), differences_(differences) {}

ComparisonResult::ComparisonResult(const grid::ResultGrid& grid, int differences)
    : ComparisonResult(std::shared_ptr<const grid::ResultGrid>(std::shared_ptr<void>(), &grid), differences) {
}

std::string_view ComparisonResult::PathA() const {
    return grid_->Text(cell::kTable, grid::kTopHeaderRow);
}

std::string_view ComparisonResult::PathB() const {
    return grid_->Text(cell::kTable + grid::kSideBOffset, grid::kTopHeaderRow);
}

std::string ComparisonResult::Message() const {
    return DifferenceMessage(differences_);
}

std::size_t ComparisonResult::RowCount() const {
    return static_cast<std::size_t>(grid_->RowCount());
}

ResultRow ComparisonResult::Row(std::size_t index) const {
    const int row = GridRow(index);
    return {.mark = grid_->Text(grid::kCompareColumn, row),
            .hidden = grid_->RowHidden(row),
            .a = SideOrNothing(*grid_, 0, row),
            .b = SideOrNothing(*grid_, grid::kSideBOffset, row),
            .differing = DifferingCells(*grid_, row),
            .oneSided = SideAlone(*grid_, row),
            .compared = std::min(kCellCount, static_cast<std::size_t>(grid_->ComparedColumns()))};
}

}  // namespace tavrel::compare
