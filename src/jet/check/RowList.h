// The live rows of a table, by the slots that name them.  A bit a slot, two when rows cannot be read.
#pragma once

#include <vector>

#include "jet/check/SlotNumbers.h"
#include "jet/storage/Pager.h"

namespace tavrel::jet::check {

class RowList {
  public:
    static constexpr std::size_t npos = SlotNumbers::npos;

    /// `slots` must outlive this object and stay as they are.
    explicit RowList(const SlotNumbers& slots) : slots_(&slots) {}

    /// A row that exists.  REQUIRES: `slot` has a number, of which none has been added yet.
    void Add(std::size_t slot);
    /// The row exists, but its values are not known.
    void Spoil(std::size_t slot);

    /// Rows added.
    [[nodiscard]] std::size_t Size() const { return rows_; }
    [[nodiscard]] bool AnySpoiled() const { return !spoiled_.empty(); }
    [[nodiscard]] const SlotNumbers& Slots() const { return *slots_; }
    /// The number of the row that a slot names, npos when there is none.
    [[nodiscard]] std::size_t Find(RowPointer slot) const;
    /// Both take any number of Slots().
    [[nodiscard]] bool Has(std::size_t slot) const { return !live_.empty() && live_[slot]; }
    [[nodiscard]] bool IsReadable(std::size_t slot) const { return spoiled_.empty() || !spoiled_[slot]; }

  private:
    const SlotNumbers* slots_;
    std::size_t rows_ = 0;
    std::vector<bool> live_;     ///< by number; empty: none
    std::vector<bool> spoiled_;  ///< likewise
};

/// Reads rows one by one; rows of the same page in a row cost one look-up.
class RowReader {
  public:
    explicit RowReader(Pager& pager) : pager_(pager) {}
    /// The bytes of the row that a slot names, wherever they lie; good until the next call.  Throws 3428.
    ByteView Read(RowPointer slot);

  private:
    ByteView Fetch(std::vector<PageRef>& page, PageNumber& number, PageNumber wanted);

    Pager& pager_;
    PageNumber number_ = 0;
    PageNumber movedNumber_ = 0;
    std::vector<PageRef> page_;   ///< one at the most
    std::vector<PageRef> moved_;  ///< likewise: where the bytes of a moved row lie
};

}  // namespace tavrel::jet::check
