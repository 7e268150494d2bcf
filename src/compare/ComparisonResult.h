// A finished comparison as rows, for reports: a view on the grid, nothing is copied.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grid/ResultGrid.h"

namespace tavrel::compare {

/// Cells of one side; the key column is not among them.
inline constexpr auto kCellCount = static_cast<std::size_t>(std::ranges::count_if(
    grid::kSideLayout, [](const grid::ColumnLayout& column) { return !column.name.empty(); }));
/// Their names, in grid order.
inline constexpr std::array<std::string_view, kCellCount> kCellNames = [] {
    std::array<std::string_view, kCellCount> names;
    std::ranges::transform(grid::kSideLayout.begin(), grid::kSideLayout.begin() + kCellCount, names.begin(),
                           &grid::ColumnLayout::name);
    return names;
}();

/// Texts of one side of a row, in the order of kCellNames.  Valid as long as the grid is not emptied.
using SideCells = std::array<std::string_view, kCellCount>;

/// The texts of a row of the grid, side A with offset 0, side B with grid::kSideBOffset.  Rows count from 1.
SideCells SideOf(const grid::ResultGrid& grid, int offset, int row);

/// What a comparison says at its end.
std::string DifferenceMessage(int differences);

enum class OneSided : std::uint8_t { None, A, B };

struct ResultRow {
    std::string_view mark;       ///< "!" or empty
    bool hidden = false;         ///< left out of view by "differences only"
    std::optional<SideCells> a;  ///< nothing when the key and every cell are blank
    std::optional<SideCells> b;
    std::uint32_t differing = 0;         ///< bit i: cell i (kCellNames) differs
    OneSided oneSided = OneSided::None;  ///< side that a realignment has found to have the field alone
    std::size_t compared = kCellCount;   ///< cells, from the front, that the comparison looked at

    [[nodiscard]] bool Differs(std::size_t cell) const { return (differing >> cell & 1U) != 0; }
    [[nodiscard]] std::vector<std::string_view> DifferingNames() const;
    /// "a", "b" or empty.
    [[nodiscard]] std::string_view OneSidedName() const;
};

class ComparisonResult {
  public:
    /// The grid must outlive the result unless it is shared with it.
    ComparisonResult(std::shared_ptr<const grid::ResultGrid> grid, int differences);
    ComparisonResult(const grid::ResultGrid& grid, int differences);

    /// Paths as shown over the two sides.
    [[nodiscard]] std::string_view PathA() const;
    [[nodiscard]] std::string_view PathB() const;
    [[nodiscard]] int Differences() const { return differences_; }
    /// What the run said at its end.
    [[nodiscard]] std::string Message() const;
    /// Rows in grid order, counted from 0.
    [[nodiscard]] std::size_t RowCount() const;
    [[nodiscard]] ResultRow Row(std::size_t index) const;

  private:
    std::shared_ptr<const grid::ResultGrid> grid_;
    int differences_;
};

}  // namespace tavrel::compare
