// The live rows of a table: the slot that names each, and where its bytes lie.  Eight bytes a row.
#pragma once

#include <cstddef>
#include <vector>

#include "jet/storage/Pager.h"

namespace tavrel::jet::check {

class RowList {
  public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    /// REQUIRES: slots come in ascending order.
    void Append(RowPointer slot, RowPointer at) { rows_.push_back({slot.ToU32(), at.ToU32()}); }
    /// The last row appended cannot be read: it exists, but its values are not known.
    void SpoilLast() { rows_.back().at = kSpoiled; }

    [[nodiscard]] std::size_t Size() const { return rows_.size(); }
    [[nodiscard]] RowPointer Slot(std::size_t row) const { return RowPointer::FromU32(rows_[row].slot); }
    [[nodiscard]] RowPointer At(std::size_t row) const { return RowPointer::FromU32(rows_[row].at); }
    [[nodiscard]] bool IsReadable(std::size_t row) const { return rows_[row].at != kSpoiled; }
    /// The row that a slot names, npos when there is none.  Quick when it lies not far behind `near`, a place
    /// whose slot is not greater (0 will do).
    [[nodiscard]] std::size_t Find(RowPointer slot, std::size_t near = 0) const;

  private:
    static constexpr std::uint32_t kSpoiled = 0;  ///< page 0 holds no rows
    struct Place {
        std::uint32_t slot;
        std::uint32_t at;
    };
    std::vector<Place> rows_;
};

/// Reads rows one by one; rows of the same page in a row cost one look-up.
class RowReader {
  public:
    explicit RowReader(Pager& pager) : pager_(pager) {}
    /// The bytes at a place, good until the next call.  Throws 3428.
    ByteView Read(RowPointer at);

  private:
    Pager& pager_;
    PageNumber number_ = 0;
    std::vector<PageRef> page_;  ///< one at the most
};

}  // namespace tavrel::jet::check
