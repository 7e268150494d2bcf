// The names of column types in definitions.
#pragma once

#include <cstdint>
#include <string_view>

#include "jet/catalog/ColumnType.h"

namespace tavrel::jet::sql {

/// What may stand in parentheses behind a type's name.
enum class TypeArguments : std::uint8_t {
    None,
    Length,      ///< (n); without it: 255
    Padded,      ///< the same, values filled up with blanks; with VARYING behind the name they are not
    TextOrMemo,  ///< (n); without it the column is a memo
    Scale,       ///< (precision [, scale])
    Seed         ///< (seed [, increment])
};

struct TypeName {
    std::string_view name;  ///< upper case
    ColumnType type;
    TypeArguments arguments;
};

/// Null when the word names no type.
const TypeName* FindTypeName(std::string_view upperWord);

}  // namespace tavrel::jet::sql
