// Widths of the grid's columns in pixels.
#pragma once

#include <array>

#include <QFont>

#include "grid/GridLayout.h"

namespace tavrel::app {

/// By grid column; column 0 is that of the row numbers, hidden columns have 0.
using ColumnWidths = std::array<int, grid::kColumnCount + 1>;

/// The given widths, never less than a column's caption needs and its usual texts, differing ones too.  What
/// room is then over goes to the columns of free text.  What is missing they give, as far as they can still
/// be read, and the other columns what they do not need.
ColumnWidths WidthsFor(const QFont& font, int room, int rowNumbers);

}  // namespace tavrel::app
