// The tables of a database, by name.
#pragma once

#include <ostream>

#include "jet/database/Database.h"

namespace tavrel::report {

/// Names only, one a line: made for loops in scripts.
void WriteTableNames(std::ostream& out, jet::Database& database, bool systemTables);

/// table,fields,rows,system.  Rows as the table's definition counts them.
void WriteTableListCsv(std::ostream& out, jet::Database& database, bool systemTables);

/// {"file": …, "tables": [{"table", "fields", "rows", "system"}, …]}
void WriteTableListJson(std::ostream& out, jet::Database& database, bool systemTables);

}  // namespace tavrel::report
