// What statements can make of a column.
#pragma once

#include <optional>

#include "script/Reach.h"

namespace tavrel::script {

/// What is known of the table while its columns are worked out.
struct ColumnPlace {
    bool hasRows = false;
    bool hasCounter = false;  ///< another column of the table counts already: no second one can
};

/// A column that numbers the rows; a table has one at most.
bool IsCounter(const details::Column& column);

/// The column as it can be added; nothing when no statement makes one of its type.
std::optional<details::Column> ReachNewColumn(const details::Column& wanted, const ColumnPlace& place);

/// What ALTER COLUMN can make of a column that is there.
details::Column ReachColumn(const details::Column& present, const details::Column& wanted,
                            const ColumnPlace& place, DataLoss loss);

}  // namespace tavrel::script
