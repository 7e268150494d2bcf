// The entries of an index against the rows of its table, both ways.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/engine/check/Context.h"
#include "jet/engine/check/RowList.h"
#include "jet/storage/RowLayout.h"

namespace tavrel::jet::check {

class IndexEntries {
  public:
    /// `where` names the index.  All must outlive this object.
    IndexEntries(Context& context, const std::string& where, const TableDefinition& table,
                 const RealIndex& index, const RowShape& shape, const RowList& rows);

    /// Takes the entries in the order of the index.
    void Add(ByteView entry);
    /// REQUIRES: every entry has been added.  Rows that have no entry.
    void CheckRowsWithoutEntry();
    /// How many keys were compared, and of how many the weights are not known.
    void ReportCounts();

  private:
    struct KeyColumn {
        std::size_t place;  ///< in the definition
        bool ascending;
    };
    struct Nulls {
        bool any = false;
        bool all = true;
    };

    Nulls NullsOf(const RowView& view) const;
    void CheckDuplicate(RowPointer slot, ByteView key, bool anyNull);
    void CheckKey(RowPointer slot, const RowView& view, ByteView key);
    std::optional<ByteVector> FetchLong(std::optional<ByteView> descriptor);

    Context& context_;
    FindingLog& log_;
    std::string where_;
    const TableDefinition& table_;
    const RealIndex& index_;
    const RowShape& shape_;
    const RowList& rows_;
    RowReader reader_;
    std::vector<KeyColumn> columns_;
    std::vector<bool> seen_;  ///< by row
    ByteVector lastKey_;
    RowPointer lastRow_{};
    bool haveKey_ = false;
    std::uint64_t comparedKeys_ = 0;
    std::uint64_t unknownKeys_ = 0;
    std::uint64_t longBudget_;  ///< bytes of long values that may still be fetched
};

}  // namespace tavrel::jet::check
