#include "app/grid/TableRows.h"

#include <algorithm>

namespace tavrel::app {

namespace {

int NameColumn(const grid::ResultGrid& grid, int row) {
    constexpr int kTable = grid::cell::kTable;
    return grid.Id(kTable, row) != grid::kEmptyText ? kTable : kTable + grid::kSideBOffset;
}

}  // namespace

std::vector<TableRows> TablesOf(const GridModel& model) {
    std::vector<TableRows> tables;
    const grid::ResultGrid& grid = model.Grid();
    grid::TextId last = grid::kEmptyText;
    for (int modelRow = 0; modelRow < model.rowCount(); ++modelRow) {
        const int row = model.GridRow(modelRow);
        const int column = NameColumn(grid, row);
        const grid::TextId name = grid.FoldedId(column, row);
        if (name != grid::kEmptyText && (tables.empty() || name != last)) {
            tables.push_back({modelRow, grid.Text(column, row)});
            last = name;
        }
        if (!tables.empty() && grid.Id(grid::kCompareColumn, row) != grid::kEmptyText) {
            ++tables.back().differences;
        }
    }
    return tables;
}

std::optional<int> TableFrom(const std::vector<TableRows>& tables, int modelRow, int by) {
    if (by > 0) {
        const auto next = std::ranges::upper_bound(tables, modelRow, {}, &TableRows::firstRow);
        return next == tables.end() ? std::nullopt : std::optional(next->firstRow);
    }
    const auto own = std::ranges::lower_bound(tables, modelRow, {}, &TableRows::firstRow);
    return own == tables.begin() ? std::nullopt : std::optional(std::prev(own)->firstRow);
}

}  // namespace tavrel::app
