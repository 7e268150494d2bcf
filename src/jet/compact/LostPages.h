// Pages with rows that no map names.  Most are left over from sessions that ended early and hold nothing that
// anybody misses; but when a table's record count says that exactly their rows are missing, its map is wrong.
#pragma once

#include <unordered_map>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/compact/SourcePages.h"

namespace tavrel::jet::compact {

class LostPages {
  public:
    explicit LostPages(SourcePages& pages) : pages_(pages) {}

    /// `rows`: those found on the pages that the table's map names.
    void AddTable(const TableDefinition& table, std::uint64_t rows);
    /// REQUIRES: every page with rows that a table or column has was met.
    [[nodiscard]] bool AnyHasLostRows();

  private:
    struct Table {
        std::uint64_t missing = 0;  ///< rows that the definition counts and the pages do not have
        std::uint64_t lost = 0;     ///< rows on pages that nothing names
    };

    SourcePages& pages_;
    std::unordered_map<PageNumber, Table> tables_;  ///< by definition page
};

/// Live rows of a data page, 0 when it cannot be read as one of the table.
std::uint64_t LiveRows(ByteView page, PageNumber table);

/// Pages that the global maps call free or pending; none when these cannot be read.
std::vector<bool> FreePages(Pager& pager);

}  // namespace tavrel::jet::compact
