// The copy of a sound database.  Anything that is not as it should be is thrown as 3428: then it is not
// sound.
#pragma once

#include "jet/engine/Database.h"
#include "jet/engine/compact/Compact.h"
#include "jet/engine/compact/DatabaseOutput.h"

namespace tavrel::jet::compact {

/// Copies everything and finishes the new database.  Returns the tables with their rows.
std::vector<CompactedTable> CopySound(Database& source, PageOutput& out, ScratchNumbers& numbers,
                                      SourcePages::ProgressFn progress);

}  // namespace tavrel::jet::compact
