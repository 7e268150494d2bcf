// Texts that statements take for a name and for nothing else.
#pragma once

#include <string_view>

namespace tavrel::jet::sql {

/// A single bare or quoted name.  False for reserved words, and for what would be read as a name with an
/// alias, as a list, a join or a query.
bool IsTableName(std::string_view text);

/// The same where a column may stand: false, too, for literals such as TRUE and for a column with its table.
bool IsColumnName(std::string_view text);

}  // namespace tavrel::jet::sql
