// The functions of expressions, as a table.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "jet/sql/values/Values.h"

namespace tavrel::jet::sql {

using Arguments = std::span<const Value* const>;

struct Function {
    std::string_view name;  ///< upper case
    std::size_t fewest, most;
    StaticType type;   ///< nothing: of the first argument
    bool nullForNull;  ///< a Null among the arguments makes the result Null without a call
    void (*call)(Arguments arguments, Value& out);
};

/// The functions of texts, of numbers, of dates.
std::span<const Function> TextFunctions();
std::span<const Function> NumberFunctions();
std::span<const Function> DateFunctions();

/// FORMAT: numbers by 0 # , . and %, dates by y m d h n s.
std::string FormatValue(const Value& value, std::string_view pattern);

}  // namespace tavrel::jet::sql
