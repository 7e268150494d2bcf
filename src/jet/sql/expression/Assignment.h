// A value on its way into a column.
#pragma once

#include "jet/sql/expression/TableAccess.h"
#include "jet/sql/values/Values.h"

namespace tavrel::jet::sql {

/// Converts a value to a column's type: numbers and texts into each other, rounding half to even, texts that
/// read as dates, serial numbers; Null stays Null, but is False in a yes/no column. Throws 3464 (no such
/// conversion), 3349 (out of range), 3163 (text or bytes too long).
void ConvertFor(const TableColumn& column, const Value& value, Value& out);

/// Throws 3314 for a Null that the column refuses, 3315 for an empty text.
void CheckRules(const std::string& table, const TableColumn& column, const Value& value);

/// The value as a key of the column's index; nothing when no stored value can be equal to it.
std::optional<Value> KeyFor(const TableColumn& column, const Value& value, const TextComparer& texts);

}  // namespace tavrel::jet::sql
