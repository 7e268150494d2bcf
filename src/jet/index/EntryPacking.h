// Entries of index pages, and how sorted ones share pages: what they take, what they have in common, and
// where a page that is too full is divided.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

ByteVector LeafEntry(ByteView key, RowPointer row);
ByteVector NodeEntry(ByteView bound, PageNumber child);

/// Whole entries in key order.
using Entries = std::span<const ByteView>;

/// Owns the bytes of entries, in one piece.
class EntryList {
  public:
    /// Appends an entry that begins with `front`.
    void Add(ByteView front, ByteView rest) {
        AppendBytes(bytes_, front);
        AppendBytes(bytes_, rest);
        ends_.push_back(bytes_.size());
    }
    void Reserve(std::size_t entries, std::size_t bytes) {
        ends_.reserve(entries);
        bytes_.reserve(bytes);
    }
    /// Good until the next Add.
    [[nodiscard]] std::vector<ByteView> Views() const;

  private:
    ByteVector bytes_;
    std::vector<std::size_t> ends_;
};

inline Entries Part(Entries entries, std::size_t from, std::size_t to) {
    return entries.subspan(from, to - from);
}

/// The bytes that a page's entries take with a prefix left out of all but the first.
std::size_t PackedSize(Entries entries, std::size_t prefix);
/// Length of what all entries of a sorted list begin with, at most the first's length less its row pointer.
std::size_t CommonPrefix(Entries entries);
/// The prefix under which a leaf's entries fit its page; nothing when they do not.
std::optional<std::size_t> FittingPrefix(Entries entries);

/// Where a leaf is divided: the ends of its parts.  In the middle, or before the last entry when that was
/// appended, which is how growing numbers fill their leaves; in runs when a prefix that is gone makes two
/// parts too few.
std::vector<std::size_t> LeafParts(Entries entries, bool appended);
/// The entry of a node whose child becomes the left part's tail: it leaves the parts as even as can be, or
/// the right one short when the last entry was appended.
std::size_t NodeSeparator(Entries entries, bool appended);

}  // namespace tavrel::jet
