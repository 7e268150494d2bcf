// Reading a cell where only its text matters.
#pragma once

#include <string>

#include "grid/ResultGrid.h"

namespace tavrel::modCmpDB {

/// The cell's text; empty when the cell cannot be read.
inline std::string GetCellText(const grid::ResultGrid& grid, int column, int row) {
    std::string text;
    return grid.GetText(column, row, text) ? text : std::string();
}

}  // namespace tavrel::modCmpDB
