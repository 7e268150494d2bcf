// What kind of database a file is.
#pragma once

#include <ostream>

#include "jet/database/Database.h"
#include "report/TextTable.h"

namespace tavrel::report {

/// One line for each fact.
void WriteInfoText(std::ostream& out, jet::Database& database, const TextStyle& style);

/// {"file", "size", "version", "build", "created", "collation": {"lcid", "name"}, "code_page", "password",
/// "page_encryption", "tables": {"user", "system", "linked"}}
void WriteInfoJson(std::ostream& out, jet::Database& database);

}  // namespace tavrel::report
