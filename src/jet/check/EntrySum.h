// The entries that the rows of a table call for and those that an index has, told apart by one number each.
//
// Both sides are added up in whatever order they come, so that rows and entries are read once and none of
// them is kept.  Where the sums agree the index is right; where they do not, or where a row raises any
// question, IndexEntries looks at each entry.
#pragma once

#include <cstdint>

#include "jet/check/IndexKey.h"

namespace tavrel::jet::check {

/// The sum of the entries' hashes, and their number.  Different sets have the same once in 2^64 cases.
class EntrySum {
  public:
    void Add(ByteView entry);
    bool operator==(const EntrySum&) const = default;
    [[nodiscard]] std::uint64_t Number() const { return number_; }

  private:
    std::uint64_t number_ = 0;
    std::uint64_t sum_ = 0;
};

/// The entries that the rows call for.
class WantedEntries {
  public:
    /// Both must outlive this object.
    WantedEntries(const TableDefinition& table, const RealIndex& index);
    void Add(RowPointer slot, const RowView& row);
    /// An index with such entries is right in every respect that concerns its rows.
    [[nodiscard]] bool Are(const EntrySum& entries) const { return certain_ && entries == sum_; }

  private:
    bool AddChecked(RowPointer slot, const RowView& row);

    const TableDefinition& table_;
    const RealIndex& index_;
    std::vector<KeyColumn> columns_;
    bool certain_ = true;  ///< false: a row may be wrong, or its key cannot be computed here
    EntrySum sum_;
    ByteVector entry_;
};

/// The entries that an index has, in its order.
class PresentEntries {
  public:
    explicit PresentEntries(const RealIndex& index) : index_(index) {}
    void Add(ByteView entry);
    [[nodiscard]] const EntrySum& Sum() const { return sum_; }
    /// Rows of a unique index have the same key, and no null in it that would allow that.
    [[nodiscard]] bool AnyDuplicate() const { return anyDuplicate_; }

  private:
    const RealIndex& index_;
    EntrySum sum_;
    ByteVector lastKey_;
    bool anyDuplicate_ = false;
};

}  // namespace tavrel::jet::check
