// The four tables that the engine keeps for itself.  Their columns, indexes and places are the same in every
// file.
#pragma once

#include <vector>

#include "jet/catalog/TableDefinition.h"

namespace tavrel::jet {

/// Definitions of MSysObjects, MSysACEs, MSysQueries and MSysRelationships, pages 2 to 5, with roots but
/// without maps.
std::vector<TableDefinition> NewSystemTables(std::uint16_t sortOrder);

/// The name of the engine table at a definition page.
std::string_view SystemTableName(PageNumber page);

}  // namespace tavrel::jet
