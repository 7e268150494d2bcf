// The session's SQL in SQLite's.
#pragma once

#include <optional>
#include <string>

namespace tavrel::bench {

/// How SQLite is to add a column.
enum class NewColumns {
    AsWritten,  ///< default and NOT NULL stay: the rows that are there have the value without being touched
    Null        ///< without them: the rows are Null as they are in ours, and the fill has to write them
};

/// Nothing when SQLite has no counterpart (a column that changes its type).  A foreign key becomes the index
/// on its column that it also is in our files.
std::optional<std::string> Translate(const std::string& statement, NewColumns newColumns);

}  // namespace tavrel::bench
