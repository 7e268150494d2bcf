// Table definitions of a damaged database, made such that a table can stand on them.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/compact/SourceSurvey.h"

namespace tavrel::jet::compact {

/// Takes out of a definition what cannot be: indexes on columns that are not there, names without a tree,
/// trees without a name.  True when nothing had to be changed.  Throws 3428 when the columns themselves
/// contradict one another.
bool RepairDefinition(TableDefinition& table, const std::string& name, LossLog& losses);

/// Takes a tree away with all its names; false, and nothing done, when a relation uses it.
bool RemoveTree(TableDefinition& table, std::size_t real);

/// Takes a name away, and its tree when no other name uses it.
void RemoveIndex(TableDefinition& table, std::uint32_t number);

/// The definition of an engine table; the one that every database has where the stored one cannot be read,
/// with maps and trees that lead nowhere.  `intact` tells which.
TableDefinition SystemDefinition(Pager& pager, PageNumber page, std::uint16_t sortOrder, bool& intact);

}  // namespace tavrel::jet::compact
