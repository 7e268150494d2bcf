// Finding a table or a field in the listing.
#pragma once

#include <vector>

#include <QString>

#include "app/grid/GridModel.h"

namespace tavrel::app {

struct Hit {
    int modelRow;
    int column;  ///< of the grid
};

/// The rows shown whose table or field, on either side, holds the text, letter case ignored; from top to
/// bottom, each row once, with the first such column.  A table's name counts in its first row only.  An empty
/// text is nowhere.
std::vector<Hit> FindHits(const GridModel& model, const QString& text);

}  // namespace tavrel::app
