// Compaction: a new database that holds everything the old one holds, without the room that was given up.
//
// Tables, rows, long values, indexes with their stored keys, relations, properties, permissions, autonumber
// positions and every other object are taken over; what refers to a page follows it.  Pages of a table lie
// together, rows in the order of the primary key, index pages full.  The header stays: sort order, code page,
// password, enciphering and creation date.
//
// A damaged database gives back all that can be read, and each loss is told.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/File.h"

namespace tavrel::jet {

class Database;

enum class CompactPhase { Copying, Repairing, Checking };

struct CompactOptions {
    std::string password;
    bool checkPassword = true;  ///< false: compact a protected file without knowing its password
    /// Steps done of all steps in a phase; called now and then.
    std::function<void(CompactPhase phase, std::uint64_t done, std::uint64_t total)> progress;
};

/// Something that the new database does not have as the old one had it.
struct CompactLoss {
    std::string where;  ///< table, page, row: Korean
    std::string text;   ///< what is lost there: Korean
};

struct CompactedTable {
    std::string name;
    std::uint64_t rowsBefore = 0;  ///< rows that can be read in the old database
    std::uint64_t rowsAfter = 0;
};

struct CompactReport {
    bool repaired = false;  ///< the old database was not sound
    std::vector<CompactLoss> losses;
    std::vector<CompactedTable> tables;
    std::uint64_t bytesBefore = 0;
    std::uint64_t bytesAfter = 0;
};

/// Writes a new database at `destination`, which must not exist; it is complete, on the medium and found
/// sound by CheckDatabase when the call returns, and not there when it throws.  The source is not changed.
/// Throws what opening throws, 3704 (open elsewhere), 3204 (destination exists), 3026 (disk full), 3040 (a
/// page cannot be read from the disk), 3428 (beyond repair).
CompactReport CompactDatabase(const std::string& source, const std::string& destination,
                              const CompactOptions& options = {});

/// Gives an empty file for an attempt; the file of an attempt before is closed then, and of no use.
using FileMaker = std::function<std::unique_ptr<platform::File>()>;

/// The same from a database that is open into files that are; `path` is for messages.  A file that was not
/// finished is left to the caller.
CompactReport CompactInto(Database& source, const FileMaker& destination, const std::string& path,
                          const CompactOptions& options);

}  // namespace tavrel::jet
