// One table: its definition, pages, rows, long values and indexes.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/Context.h"
#include "jet/check/EntrySum.h"
#include "jet/check/LongValueCheck.h"
#include "jet/check/RowList.h"

namespace tavrel::jet::check {

class TableCheck {
  public:
    /// `system`: not a user's table.
    TableCheck(Context& context, const std::string& name, const TableDefinition& table, bool system);
    void Run();

  private:
    void CheckPages();
    void CheckFreeSpace(const std::vector<PageNumber>& owned, const std::vector<PageNumber>& free);
    void ReadLongMaps();
    RowList CheckRows();
    void CheckIndexes(const RowList& rows);
    void CheckIndex(std::size_t real, const RowList& rows);

    Context& context_;
    FindingLog& log_;
    std::string name_;
    std::string where_;
    const TableDefinition& table_;
    RowShape shape_;
    bool system_;
    SlotNumbers slots_;  ///< of the pages whose rows can be read
    std::vector<LongValueCheck> longValues_;
    std::vector<WantedEntries> wanted_;  ///< by index
};

}  // namespace tavrel::jet::check
