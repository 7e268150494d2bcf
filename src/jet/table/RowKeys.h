// The keys of a row in the indexes of its table.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/index/EntryArena.h"
#include "jet/index/KeyEncoder.h"

namespace tavrel::jet {

/// The stored bytes of a row's columns by place in the definition; nothing for null, long values fetched.
using StoredFields = std::vector<std::optional<ByteVector>>;

struct RowKey {
    ByteVector bytes;
    bool hasNull = false;
    bool allNull = true;
    bool standIn = false;  ///< a stand-in weight, or a great length: other programs may make another key
};

/// Makes the keys of one index.
class KeyMaker {
  public:
    /// The definition must outlive the maker.  Throws 3428 when a column of the index does not exist.
    KeyMaker(const TableDefinition& table, const std::vector<IndexColumn>& columns,
             UnknownWeights unknown = UnknownWeights::Refuse);

    /// `key` is filled anew.  Throws 3990 for a character of unknown weight, 3047 for a key longer than
    /// kLongestKnownKey; where stand-ins are wanted only 3047 for one that no page can hold.
    void Make(const StoredFields& fields, RowKey& key) const;
    /// Marks the columns that the key is made of.
    void MarkColumns(std::vector<bool>& wanted) const;

  private:
    struct Part {
        const Column* column;
        std::size_t place;
        bool ascending;
    };
    std::vector<Part> parts_;
    UnknownWeights unknown_;
};

/// Reads a table's rows and hands out the columns (by place) that are wanted.  Returns the number of rows.
std::uint32_t ScanFields(Pager& pager, const TableDefinition& table, const std::vector<bool>& wanted,
                         const std::function<void(RowPointer, const StoredFields&)>& take);

/// The keys of a table's rows over some columns (numbers), all ascending, sorted; rows with a null there are
/// left out.  For comparing only: characters of unknown weight have stand-ins.
EntryArena KeysWithoutNull(Pager& pager, const TableDefinition& table,
                           const std::vector<std::uint16_t>& columns);

/// True when every key of `children` is one of `parents`.  REQUIRES: both are sorted.
bool EveryKeyFound(const EntryArena& children, const EntryArena& parents);

}  // namespace tavrel::jet
