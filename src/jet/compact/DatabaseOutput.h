// A new database as a whole: header, global maps, the tables of the engine at their fixed pages, the others
// behind them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/compact/TableCopy.h"
#include "jet/storage/FileHeader.h"

namespace tavrel::jet::compact {

/// Memory for row places, in blocks of 4 KB, before the rest goes to the file.
inline constexpr std::size_t kResidentBlocks = 2560;

class DatabaseOutput {
  public:
    /// `systemTables`: packed definitions of pages 2 to 5.
    DatabaseOutput(PageOutput& out, const std::vector<TableDefinition>& systemTables);

    /// A table of the engine, by its place in `systemTables`.  REQUIRES: no further tables will be added.
    [[nodiscard]] TableOutput& SystemTable(std::size_t place) {
        out_.UseReserve();
        return *tables_[place];
    }
    /// A further table; `oldPage` is its definition page in the old database.
    TableOutput& AddTable(const TableDefinition& packed, PageNumber oldPage);
    [[nodiscard]] std::size_t TableCount() const { return tables_.size(); }
    [[nodiscard]] TableOutput& LastTable() { return *tables_.back(); }
    /// Forgets the tables added since there were `count`; the pages are the caller's to take back.
    void RemoveTablesFrom(std::size_t count);
    /// The engine table is begun anew.
    void ResetSystemTable(std::size_t place);
    /// New numbers of the tables added so far.
    [[nodiscard]] const ObjectIds& Ids() const { return ids_; }

    /// Writes definitions, maps and header, all of it to the medium.
    void Finish(const FileHeader& header);

  private:
    [[nodiscard]] std::unique_ptr<TableOutput> NewSystemTable(std::size_t place);
    void FollowPartners(TableDefinition& definition) const;

    PageOutput& out_;
    std::vector<TableDefinition> systemTables_;
    std::unique_ptr<MapRows> systemMaps_;
    std::vector<std::unique_ptr<TableOutput>> tables_;
    ObjectIds ids_;
};

}  // namespace tavrel::jet::compact
