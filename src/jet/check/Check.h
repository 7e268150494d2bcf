// The integrity check: walks a whole database and tells what is broken.
//
// Nothing is changed, and damage never stops it: a part that cannot be read becomes a finding and the check
// goes on with the next part.  Time and memory are bounded by the size of the file whatever its bytes claim.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::jet {

class Database;

struct Finding {
    /// Error: the structure is damaged.  Note: stale data as it stays behind when a session ends without
    /// closing the file, or a harmless habit of another writer.
    enum class Severity { Error, Note };

    Severity severity = Severity::Error;
    std::string where;      ///< table, page, record: Korean
    std::string text;       ///< what is wrong there: Korean
    std::string_view code;  ///< the kind of finding, e.g. "leaked-page"; never changes, lives for ever
};

struct CheckReport {
    std::vector<Finding>
        findings;  ///< in the order of discovery; at most kFindingsPerKind of a kind and a line for the rest
    std::map<std::string, std::uint64_t>
        counts;  ///< what was looked at: "tables", "rows", "index-entries" ...

    [[nodiscard]] std::uint64_t Count(Finding::Severity severity) const;
};

inline constexpr std::size_t kFindingsPerKind = 1000;

/// Pages done of pages in all; called now and then, and once at the end.
using ProgressFn = std::function<void(std::uint64_t done, std::uint64_t total)>;

/// Checks the whole file.  Open it with OpenOptions::tolerant, so that a truncated one gets this far.
CheckReport CheckDatabase(Database& database, const ProgressFn& progress = {});

}  // namespace tavrel::jet
