// What a table definition says of its indexes.
#pragma once

#include <string>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/FindingLog.h"

namespace tavrel::jet::check {

/// `where` names the table; `sortOrder` is the database's.
void CheckIndexDefinitions(FindingLog& log, const std::string& where, const TableDefinition& table,
                           std::uint16_t sortOrder);

/// The name that findings give to a tree: that of its first logical index, else its number.
std::string IndexName(const TableDefinition& table, std::size_t real);

}  // namespace tavrel::jet::check
