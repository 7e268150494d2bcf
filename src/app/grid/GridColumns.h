// Widths of the grid's columns in pixels.
#pragma once

#include <array>

#include <QFontMetrics>

#include "grid/GridLayout.h"

namespace tavrel::app {

/// By grid column; column 0 is that of the row numbers, hidden columns have 0.
using ColumnWidths = std::array<int, grid::kColumnCount + 1>;

/// The given widths, never less than a column's caption and its usual texts need; what room is then over or
/// missing goes to the columns of free text, as far as they can still be read.
ColumnWidths WidthsFor(const QFontMetrics& metrics, int room, int rowNumbers);

}  // namespace tavrel::app
