// The snapshot of one database as rows, for reports: a view on the grid, nothing is copied.
#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "compare/ComparisonResult.h"

namespace tavrel::compare {

class SchemaRows {
  public:
    explicit SchemaRows(std::shared_ptr<const grid::ResultGrid> grid) : grid_(std::move(grid)) {}
    [[nodiscard]] std::string_view Path() const;
    [[nodiscard]] std::size_t RowCount() const;
    /// Rows count from 0.
    [[nodiscard]] SideCells Row(std::size_t index) const;

  private:
    std::shared_ptr<const grid::ResultGrid> grid_;
};

}  // namespace tavrel::compare
