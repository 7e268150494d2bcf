// The entries of one index while it is being built: one byte buffer for all of them, and a list that is
// sorted.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// The longest key that fits a page wherever its entry lands: a node's entry adds 4 bytes of row and 4 of
/// child.
inline constexpr std::size_t kMaxKeyBytes = kPageSize - 0x1E0 - 8;

class EntryArena {
  public:
    /// Room for that many entries and key bytes altogether; a hint.
    void Reserve(std::size_t entries, std::size_t keyBytes);
    /// Adds the entry of a row.  `hasNull`: a column of the key is null, so that the key is never a
    /// duplicate. Throws 3047 when the key is longer than kMaxKeyBytes.
    void Add(ByteView key, RowPointer row, bool hasNull);

    [[nodiscard]] std::size_t Size() const { return items_.size(); }
    /// Key, u24 BE page, u8 row.  The view is good until the next Add.
    [[nodiscard]] ByteView Entry(std::size_t index) const {
        return ByteView(bytes_).subspan(items_[index].offset, items_[index].length);
    }
    [[nodiscard]] ByteView Key(std::size_t index) const {
        return Entry(index).first(items_[index].length - kRowBytes);
    }
    [[nodiscard]] RowPointer Row(std::size_t index) const;

    /// Puts the entries into the index's order: bytes ascending, equal keys by row.
    void Sort();
    /// Number of different keys.  REQUIRES: sorted.
    [[nodiscard]] std::uint32_t DistinctKeys() const;
    /// Place of the first entry whose key, holding no null, is that of the entry before.  REQUIRES: sorted.
    [[nodiscard]] std::optional<std::size_t> FirstDuplicate() const;

  private:
    static constexpr std::size_t kRowBytes = 4;

    struct Item {
        std::size_t offset;  ///< in bytes_
        std::uint32_t length;
        bool hasNull;
        std::uint64_t head;  ///< while sorting: the 8 bytes to be compared, as a number
    };
    [[nodiscard]] ByteView BytesOf(const Item& item) const {
        return ByteView(bytes_).subspan(item.offset, item.length);
    }
    void SortBehind(std::span<Item> items, std::size_t depth);
    [[nodiscard]] bool SameKey(std::size_t left, std::size_t right) const;

    ByteVector bytes_;
    std::vector<Item> items_;
};

}  // namespace tavrel::jet
