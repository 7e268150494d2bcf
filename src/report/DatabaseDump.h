// Everything that a database holds, as one JSON document: in the form that other readers of the format print
// too, so that two of them can be compared character by character.
#pragma once

#include <ostream>

#include "jet/database/Database.h"
#include "platform/Dialogs.h"

namespace tavrel::report {

struct DumpOptions {
    bool systemTables = false;                  ///< the engine's own tables, too
    platform::ProgressBar* progress = nullptr;  ///< may be null; one step for each table
};

/// Tables, columns, indexes, row counts, a digest of all rows, relations: pure ASCII, one space for each
/// level, a line feed at the end.  Nothing is written when the database cannot be read to the end (Error
/// 3428).
void WriteDump(std::ostream& out, jet::Database& database, const DumpOptions& options = {});

}  // namespace tavrel::report
