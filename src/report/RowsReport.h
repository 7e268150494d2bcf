// The rows of one table.
#pragma once

#include <ostream>
#include <string_view>

#include "jet/database/Database.h"

namespace tavrel::report {

/// Each row of a table as a line of JSON (pure ASCII), in storage order.  `name`: letter case ignored; throws
/// 3078 when there is no such table.
void WriteRowsJson(std::ostream& out, jet::Database& database, std::string_view name);

/// Header row and rows as CSV.  Null is an empty field, an empty text is "".  Throws like WriteRowsJson.
void WriteRowsCsv(std::ostream& out, jet::Database& database, std::string_view name);

}  // namespace tavrel::report
