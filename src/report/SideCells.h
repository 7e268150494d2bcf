// What the reports of one side and of two sides share.
#pragma once

#include <string_view>

#include "compare/ComparisonResult.h"
#include "report/JsonWriter.h"

namespace tavrel::report {

// Places in compare::kCellNames.
inline constexpr std::size_t kTableCell = 0;
inline constexpr std::size_t kFieldCell = 4;
static_assert(compare::kCellNames[kTableCell] == "table" && compare::kCellNames[kFieldCell] == "field");

/// Caption of a cell (place in compare::kCellNames), as the grid shows it.
std::string_view CaptionOf(std::size_t cell);

/// {"table": …, "P": …, …}; null when the side is blank.
void WriteJsonCells(JsonWriter& json, const std::optional<compare::SideCells>& cells);

}  // namespace tavrel::report
