// The whole of a database into a new one: each table copied as it is when it is sound, else made anew from
// what can be read of it.
#pragma once

#include "jet/compact/Compact.h"
#include "jet/compact/DatabaseOutput.h"
#include "jet/database/Database.h"

namespace tavrel::jet::compact {

struct CopyOptions {
    bool salvageAll = false;  ///< no table is trusted
    SourcePages::ProgressFn progress;
};

struct CopyResult {
    bool repaired = false;
    std::vector<CompactLoss> losses;
    std::vector<CompactedTable> tables;
};

/// Damage of the source: another way of reading may help.  Anything else, a full disk or a page that the
/// system does not give for two, is final.
bool IsDamage(const Error& error);

/// Copies everything and finishes the new database.  Throws 3428 when rows lie outside every table's maps and
/// belong to one, unless `salvageAll` is set.
CopyResult CopyDatabase(Database& source, PageOutput& out, ScratchNumbers& numbers, CopyOptions options);

}  // namespace tavrel::jet::compact
