// A table definition and its property blob, made from what a caller asks for.
#pragma once

#include "jet/catalog/Properties.h"
#include "jet/catalog/Schema.h"
#include "jet/catalog/TableDefinition.h"

namespace tavrel::jet {

/// What the fixed columns of a row may take together.
inline constexpr unsigned kMaxFixedBytes = 4000;

/// The definition of a new table, without pages: maps and roots are still to be given.  Columns and indexes
/// are numbered in the order given. Throws 3047, 3090, 3125, 3190, 3191, 3264, 3277, 3283,
/// 3375, 3382, 3409, 3626.
TableDefinition NewTableDefinition(const NewTable& wanted, std::uint16_t sortOrder);

/// Adds an index, without its tree yet, as the last of both lists.  Throws 3125, 3277, 3283, 3375, 3409.
void AddIndexDefinition(TableDefinition& table, const NewIndex& wanted, const std::string& tableName);

/// The properties that the given columns ask for; empty when they ask for none.
PropertyBlob NewTableProperties(const NewTable& wanted);

/// Puts the logical indexes into the order of their names, which is that of the sort order's keys.  Where a
/// weight is not known the names are ordered by their lower-case letters.
void SortLogicalIndexes(TableDefinition& table, std::uint16_t sortOrder);

}  // namespace tavrel::jet
