// Reads what two databases are compared by.
#pragma once

#include <string>

#include "details/Schema.h"

namespace tavrel::jet {
class Database;
}

namespace tavrel::details {

/// The engine's own tables (MSys…) and the relations between them are left out.  `table`: only the one of
/// that name, letter case ignored, and its relations; empty: all.  Throws Error when a definition cannot be
/// read.
Schema ReadSchema(jet::Database& database, const std::string& table = {});

/// The same for a file, opened for reading.  Throws Error like jet::Database::Open, too.
Schema ReadSchema(const std::string& path, const std::string& password, const std::string& table = {});

}  // namespace tavrel::details
