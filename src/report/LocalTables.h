// Which tables a report goes through, and in what order.
#pragma once

#include <vector>

#include "jet/database/Database.h"

namespace tavrel::report {

/// The database's own tables by name (lower case, then as written); those of the engine only when asked for.
/// The objects belong to the database's catalog.
std::vector<const jet::CatalogObject*> LocalTables(jet::Database& database, bool systemTables);

}  // namespace tavrel::report
