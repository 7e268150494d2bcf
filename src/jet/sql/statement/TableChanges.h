// What the executor changes rows through.
//
// Values that arrive are converted to their column's type, fit its size and have passed the column's Required
// and zero-length rules; unique indexes, relations and cascades are the implementation's work.  A failure is
// an exception: the executor then undoes the whole statement.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "jet/sql/expression/TableAccess.h"

namespace tavrel::jet::sql {

class TableChanges {
  public:
    virtual ~TableChanges() = default;
    /// Appends a row; one value per column, in the order of TableAccess::Columns().  A Null for an autonumber
    /// column asks for the next number.  Returns what the row's counter column holds, nothing for tables
    /// without one. Throws 3022, 3047, 3058, 3201.
    virtual std::optional<std::int32_t> InsertRow(std::span<const Value> values) = 0;
    /// Writes the columns named to Tables::Change, in that order.  False when the row is there no more (a
    /// cascade took it).  Throws 3022, 3047, 3058, 3200, 3201 and the numbers of cascades.
    virtual bool UpdateRow(RowId row, std::span<const Value> values) = 0;
    /// False when the row is there no more.  Throws 3200 and the numbers of cascades.
    virtual bool DeleteRow(RowId row) = 0;
    /// After the last row: whatever was put off is done now, and may throw as above.
    virtual void Finish() = 0;
};

}  // namespace tavrel::jet::sql
