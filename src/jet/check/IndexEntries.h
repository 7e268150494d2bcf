// The entries of an index against the rows of its table one by one, both ways: which of them are wrong.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/Context.h"
#include "jet/check/IndexKey.h"
#include "jet/check/RowList.h"
#include "jet/storage/RowLayout.h"

namespace tavrel::jet::check {

class IndexEntries {
  public:
    /// `where` names the index.  All must outlive this object.
    IndexEntries(Context& context, const std::string& where, const TableDefinition& table,
                 const RealIndex& index, const RowShape& shape, const RowList& rows);

    /// Takes the entries in the order of the index.  They are looked at many at a time, in the order of the
    /// rows, so that a page is read once for all of them.
    void Add(ByteView entry);
    /// Looks at the entries that are still waiting.
    void Finish();
    /// REQUIRES: Finish has been called.  Rows that have no entry.
    void CheckRowsWithoutEntry();
    /// How many keys were compared, and of how many the weights are not known.
    void ReportCounts() { ReportCounts(log_, comparedKeys_, unknownKeys_); }
    static void ReportCounts(FindingLog& log, std::uint64_t compared, std::uint64_t unknown);

  private:
    struct Waiting {
        RowPointer slot;
        RowPointer duplicate;  ///< the row before in the index when it has the same key; else page 0
        std::size_t start = 0;
        std::size_t length = 0;  ///< of the key in keys_
    };

    KeyNulls NullsOf(const RowView& view) const;
    void CheckEntry(const Waiting& entry);
    bool CheckRowWithoutEntry(RowPointer slot);
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
    std::vector<bool> seen_;  ///< by number of the slot
    std::vector<Waiting> waiting_;
    ByteVector keys_;
    ByteVector lastKey_;
    RowPointer lastRow_{};
    std::uint64_t comparedKeys_ = 0;
    std::uint64_t unknownKeys_ = 0;
    std::uint64_t longBudget_;  ///< bytes of long values that may still be fetched
};

}  // namespace tavrel::jet::check
