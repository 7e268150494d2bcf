// Appends rows to one table: stores them with their long values and collects their index entries, from which
// the indexes are built at the end.
#pragma once

#include <map>
#include <memory>
#include <span>

#include "jet/table/LongValueWriter.h"
#include "jet/table/RowBuilder.h"
#include "jet/table/RowKeys.h"
#include "jet/table/WriteContext.h"

namespace tavrel::jet {

class RowWriter {
  public:
    RowWriter(WriteContext& context, std::string tableName, TableDefinition table,
              const PropertyBlob& properties = {});
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    [[nodiscard]] const TableDefinition& Table() const { return table_; }
    [[nodiscard]] const std::string& TableName() const { return tableName_; }

    /// Appends a row; `values` by place in the definition's columns.  A row that is refused leaves nothing
    /// behind: 3058 (null in an index that is required), 3990 (character of unknown weight in an index), and
    /// those of RowBuilder.
    RowPointer Append(std::span<const Value> values);

    /// Throws 3022 when a unique index would hold a key twice.
    void CheckUnique();
    /// Builds the indexes anew from the entries of all rows and writes the definition.
    void Save();
    /// Takes back the rows appended since the writer was made or Save.
    void Undo();

  private:
    struct IndexEntries {
        KeyMaker maker;
        EntryArena entries;
        RowKey key;  ///< of the row at hand
    };

    void CollectExisting();
    void MakeKeys();
    void AddEntries(RowPointer row);
    RowPointer Store(ByteVector row);
    void FreeOldPages(const RealIndex& index);

    WriteContext& context_;
    std::string tableName_;
    TableDefinition table_;
    RowBuilder builder_;
    RowStore rows_;
    std::map<std::size_t, LongValueWriter> longValues_;  ///< by place in the definition's columns
    std::vector<IndexEntries> indexes_;                  ///< one for each real index
    bool collected_ = false;  ///< indexes_ has the entries of the rows that were there
    std::uint32_t savedAutonumber_;
};

}  // namespace tavrel::jet
