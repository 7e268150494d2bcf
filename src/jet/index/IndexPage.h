// Index pages.
//
// | offset | size | content                                                              |
// |--------|------|----------------------------------------------------------------------|
// | 00     | u8   | 03 node, 04 leaf                                                     |
// | 02     | u16  | free bytes: 4096 - 1E0 - used                                        |
// | 04     | u32  | definition page of the table                                         |
// | 0C, 10 | u32  | leaf: previous and next leaf, 0 = none                               |
// | 14     | u32  | node: tail page = the last child                                     |
// | 18     | u16  | prefix length: every entry but the first omits that many bytes       |
// | 1A     | u8   | level: 0 leaf, 1 node above leaves ...                               |
// | 1B     | 453  | entry mask: bit k set = an entry ends at 1E0 + k                     |
// | 1E0    | 3616 | entries: leaf: key, u24 BE page, u8 row; node: the same, u32 BE child |
#pragma once

#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

inline constexpr std::size_t kIndexMask = 0x1B;
inline constexpr std::size_t kIndexEntries = 0x1E0;
inline constexpr std::size_t kIndexRoom = kPageSize - kIndexEntries;

/// A page taken apart, prefix put back.
struct IndexPageContent {
    bool leaf = true;
    std::uint16_t freeField = 0;
    std::uint32_t reserved = 0;  ///< at 08
    PageNumber owner = 0;
    PageNumber previous = 0;
    PageNumber next = 0;
    PageNumber tail = 0;
    std::uint8_t level = 0;
    std::size_t used = 0;
    std::size_t prefix = 0;
    std::vector<ByteVector> entries;
};

/// Throws 3428 when the page is no index page or an entry is impossibly short.
IndexPageContent ReadIndexPage(ByteView page);

/// A leaf entry in its parts.  REQUIRES: entry.size() >= 4.
inline ByteView LeafKey(ByteView entry) {
    return entry.first(entry.size() - 4);
}
inline RowPointer LeafRow(ByteView entry) {
    return {U24Be(entry, entry.size() - 4), entry.back()};
}
/// A node entry's key and row pointer together, and its child.  REQUIRES: entry.size() >= 8.
inline ByteView NodeBound(ByteView entry) {
    return entry.first(entry.size() - 4);
}
inline PageNumber NodeChild(ByteView entry) {
    return U32Be(entry, entry.size() - 4);
}

}  // namespace tavrel::jet
