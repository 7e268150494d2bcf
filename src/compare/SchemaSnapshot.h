// Reads the structure of a database into one side of the result grid, a row a field.
#pragma once

#include <string>

#include "grid/ResultGrid.h"
#include "platform/Dialogs.h"

namespace tavrel::compare {

/// Where a snapshot goes, and who is told of it.
struct SnapshotTarget {
    grid::ResultGrid& grid;
    platform::ProgressBar& progress;
    platform::MessageBox& messages;
};

/// Lists the tables of `path` in side A (columns 1 to 11, the grid is emptied first) or side B (13 to 23).
/// `tableFilter` empty: every user table, else the one of that name, letter case ignored.  False when the
/// database cannot be opened, the message having been shown.  Throws Error when it cannot be read after that;
/// the database is closed then too.
bool LoadSchemaSnapshot(const SnapshotTarget& target, const std::string& path, bool sideA,
                        const std::string& password, const std::string& tableFilter);

/// True when a snapshot of the database lists a table of that name, letter case ignored.  Throws Error when
/// it cannot be opened or read.
bool ListsTable(const std::string& path, const std::string& password, const std::string& table);

}  // namespace tavrel::compare
