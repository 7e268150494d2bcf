// The tables of the listing: where each begins, and how much in it is marked.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "app/grid/GridModel.h"

namespace tavrel::app {

struct TableRows {
    int firstRow;           ///< of the model
    std::string_view name;  ///< of side A, of side B where A has none; valid until the grid is emptied
    int differences = 0;    ///< marked rows
};

/// Of the rows shown, from top to bottom.  Names that differ in letter case only are one table.
std::vector<TableRows> TablesOf(const GridModel& model);

/// The first row of the table below the one of this row, or, for a negative `by`, of the table above; from
/// within a table that is its own first row.  Nothing when there is none.
std::optional<int> TableFrom(const std::vector<TableRows>& tables, int modelRow, int by);

}  // namespace tavrel::app
