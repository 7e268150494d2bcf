// What the rows of a relation and the index entries of its two tables must have in common.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/Catalog.h"

namespace tavrel::jet::check {

/// Brings the rows of one relation into the order of their columns.  True when they belong together and none
/// is missing.  REQUIRES: there is one.
bool ArrangeRelationRows(std::vector<RelationRow>& rows);

/// The entries of a table that say they are its side of a relation in which it is the child.
std::vector<const LogicalIndex*> ChildEntries(const TableDefinition& table, const std::string& relation);

/// The parent's entry that names a child's entry and is named by it; null when there is none.
const LogicalIndex* PartnerOf(const TableDefinition& child, const LogicalIndex& entry,
                              const TableDefinition& parent);

/// True when the two entries' indexes have the columns of the relation, pair by pair.
bool IndexesMatch(const TableDefinition& child, const LogicalIndex& childEntry, const TableDefinition& parent,
                  const LogicalIndex& parentEntry, const std::vector<RelationRow>& rows);

/// True when the entry cascades what the relation's flags say.
bool CascadesMatch(const LogicalIndex& entry, std::uint32_t grbit);

}  // namespace tavrel::jet::check
