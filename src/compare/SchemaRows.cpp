#include "compare/SchemaRows.h"

namespace tavrel::compare {

std::string_view SchemaRows::Path() const {
    return grid_->Text(grid::cell::kTable, grid::kTopHeaderRow);
}

std::size_t SchemaRows::RowCount() const {
    return static_cast<std::size_t>(grid_->RowCount());
}

SideCells SchemaRows::Row(std::size_t index) const {
    return SideOf(*grid_, 0, static_cast<int>(index) + 1);
}

}  // namespace tavrel::compare
