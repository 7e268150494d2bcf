// The tables of one database that are open for changing, each once.
#pragma once

#include <memory>
#include <unordered_map>

#include "jet/catalog/Catalog.h"
#include "jet/table/EditedTable.h"

namespace tavrel::jet {

class TableEdits {
  public:
    TableEdits(Pager& pager, Catalog& catalog, std::uint32_t ownerKey);
    TableEdits(const TableEdits&) = delete;
    TableEdits& operator=(const TableEdits&) = delete;

    [[nodiscard]] WriteContext& Context() { return context_; }
    /// The table whose definition starts at a page; good until Forget.  Throws 3428 when no object names the
    /// page.
    EditedTable& Edit(PageNumber page);
    /// Writes the counters of all tables.
    void Save();
    /// Definitions have changed, or pages were rolled back: everything is read again when it is needed.  What
    /// Save has not written is lost.
    void Forget();

  private:
    std::unique_ptr<EditedTable> Open(PageNumber page);

    Catalog& catalog_;
    PageAllocator allocator_;
    WriteContext context_;
    std::unordered_map<PageNumber, std::unique_ptr<EditedTable>> tables_;
    std::unordered_map<PageNumber, std::string> names_;  ///< of user tables, by definition page
};

}  // namespace tavrel::jet
