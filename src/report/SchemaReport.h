// The snapshot of one database, a row a field.
#pragma once

#include <ostream>

#include "compare/SchemaRows.h"
#include "report/TextTable.h"

namespace tavrel::report {

/// An aligned table under its captions.
void WriteSchemaText(std::ostream& out, const compare::SchemaRows& schema, const TextStyle& style);

/// Header row (compare::kCellNames) and rows.
void WriteSchemaCsv(std::ostream& out, const compare::SchemaRows& schema);

/// {"file": …, "rows": [{"table": …, "P": …, …, "zro": …}, …]}, a row a line; every value is the cell's text.
void WriteSchemaJson(std::ostream& out, const compare::SchemaRows& schema);

}  // namespace tavrel::report
