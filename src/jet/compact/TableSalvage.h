// A damaged table made anew from the rows that can be read: values, long values and index keys.
#pragma once

#include <functional>

#include "jet/compact/PackedTable.h"
#include "jet/compact/RowSalvage.h"
#include "jet/compact/TableOutput.h"
#include "jet/index/EntryArena.h"

namespace tavrel::jet::compact {

/// What the catalog wants of a system table's rows.
struct SalvageRules {
    /// May change the fields; false: the row is left out, and whoever decides so tells why (`tell` is set
    /// once for each row).
    std::function<bool(StoredFields& fields, bool tell)> keep;
    std::vector<StoredFields> added;  ///< rows that were not there
};

struct SalvagedRows {
    std::uint64_t readable = 0;  ///< rows that could be read
    std::uint64_t leftOut = 0;   ///< of these, told: keys that exist already, nulls where none may be
};

/// The key of a row in an index cannot be made: 3990 or 3047, and the old index does not have it either.
class UnknownKey : public Error {
  public:
    UnknownKey(const Error& error, std::size_t index) : Error(error), index_(index) {}
    [[nodiscard]] std::size_t Index() const { return index_; }  ///< place of the tree

  private:
    std::size_t index_;
};

class TableSalvage {
  public:
    /// Everything referred to must outlive this.
    TableSalvage(SourcePages& source, const SourceSurvey& survey, const TableDefinition& table,
                 const std::string& name, LossLog& losses, SalvageRules rules = {});

    /// Reads the rows and makes the keys.  Throws UnknownKey.
    void Collect();
    /// REQUIRES: Collect has been called.  `packed` is the table's.  The maps and the definition are left to
    /// the caller.
    SalvagedRows Write(TableOutput& out, const PackedTable& packed, std::uint32_t& nextMark);

  private:
    struct Index {
        KeyMaker maker;
        EntryArena entries;  ///< with the rows' old places
        std::set<RowPointer> withNull;
        std::unordered_map<std::uint32_t, ByteVector> oldKeys;
        bool haveOldKeys = false;
    };

    std::optional<StoredFields> Fields(RowPointer at, bool tell);
    bool AddKeys(RowPointer at, const StoredFields& fields);
    void MakeKey(std::size_t index, RowPointer at, const StoredFields& fields, RowKey& key);
    void ReadOldKeys(std::size_t index);
    void DropDuplicates();
    [[nodiscard]] std::vector<RowPointer> Order();
    void WriteRow(RowPointer at, TableOutput& out, const PackedTable& packed, std::uint32_t& nextMark);
    [[nodiscard]] ByteVector StoreLong(const Column& column, ByteVector value, LongValuesOutput& out,
                                       std::uint32_t& nextMark) const;
    void WriteIndex(std::size_t index, TableOutput& out);

    SourcePages& source_;
    const SourceSurvey& survey_;
    const TableDefinition& table_;
    LossLog& losses_;
    SalvageRules rules_;
    RowSalvage salvage_;
    std::vector<Index> indexes_;
    std::vector<RowPointer> accepted_;
    std::set<RowPointer> dropped_;
    std::unordered_map<std::uint32_t, RowPointer> places_;  ///< new place by old
    SalvagedRows counts_;
};

}  // namespace tavrel::jet::compact
