// How many rows hold something that a change would lose.
#pragma once

#include <cstdint>
#include <string>

#include "jet/database/Database.h"

namespace tavrel::script {

/// Rows with a value in the column; a Boolean always has one.  0 when there is no such column.  Throws Error
/// when the rows cannot be read.
std::uint64_t CountHeld(jet::Database& database, const std::string& table, const std::string& column);

/// Those of them whose text has more than `size` UTF-16 units.
std::uint64_t CountLonger(jet::Database& database, const std::string& table, const std::string& column,
                          std::size_t size);

}  // namespace tavrel::script
