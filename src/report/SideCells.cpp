#include "report/SideCells.h"

#include "grid/GridLayout.h"

namespace tavrel::report {

std::string_view CaptionOf(std::size_t cell) {
    return grid::LayoutOf(grid::cell::kTable + static_cast<int>(cell)).caption;
}

void WriteJsonCells(JsonWriter& json, const std::optional<compare::SideCells>& cells) {
    if (!cells) {
        json.Null();
        return;
    }
    json.BeginObject(JsonLayout::OneLine);
    for (std::size_t cell = 0; cell < compare::kCellCount; ++cell) {
        json.Member(compare::kCellNames[cell], (*cells)[cell]);
    }
    json.EndObject();
}

}  // namespace tavrel::report
