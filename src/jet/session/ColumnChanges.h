// Adding, altering and dropping columns of a table.
#pragma once

#include "jet/session/SchemaContext.h"
#include "jet/sql/syntax/SchemaChanges.h"

namespace tavrel::jet {

/// A change of the definition alone, but for a counter, which numbers the rows that are there.
void AddColumnTo(SchemaContext& context, ChangedTable& table, const sql::ColumnDefinition& definition);

/// Gives a column another type, size, default or Required.  Where the stored bytes change, the column gets a
/// new number and every row its converted value: what is too long is cut, what does not convert becomes Null.
void AlterColumnOf(SchemaContext& context, ChangedTable& table, const sql::ColumnDefinition& definition);

void DropColumnOf(SchemaContext& context, ChangedTable& table, std::size_t place);

}  // namespace tavrel::jet
