// The compacted database takes the place of the old one.
#pragma once

#include <string>

namespace tavrel::compare {

/// Where the compacted form of a database is written: every ".mdb" in the path replaced by
/// "_compactTemp.mdb", lower case only.  The path itself when there is none in it: then nothing may be
/// written, deleted or renamed.
std::string CompactTempName(const std::string& path);

/// Deletes what an earlier attempt has left at `compacted`.  Not when the database cannot be opened: whoever
/// has it open may be that attempt, still at work.
void DeleteLeftover(const std::string& compacted, const std::string& database);

/// Throws Error when the database may be read but not be written: better before the compaction than after it.
void RequireReplaceable(const std::string& database);

/// Puts the file at `compacted` in the place of the database, in one step, so that whatever happens one of
/// the two is there whole.  False, and nothing done, when there is no such file or it is empty.  Throws Error
/// when somebody has the database open, or when it may not be written; the database stays then, and the file
/// at `compacted` is deleted.
bool ReplaceByCompacted(const std::string& compacted, const std::string& database);

}  // namespace tavrel::compare
