// Sets of pages, each stored as one row.
//
// Type 0, inline: 00, u32 first page, bitmap (bit k, LSB first, is page first+k).  69 bytes = 512 pages.
// Type 1: 01, 17 * u32 numbers of bitmap pages (0 = none); the k-th covers pages k*32736 .. (k+1)*32736-1.
// A bitmap page is 05 01 00 00 and 4092 bytes of bits.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "jet/storage/Pager.h"

namespace tavrel::jet {

inline constexpr std::size_t kMapRowBytes = 69;
inline constexpr std::uint32_t kMapPagesPerBitmap = (kPageSize - 4) * 8;
inline constexpr std::size_t kMapMaxBitmaps = 17;
/// A limit that leaves nothing out.
inline constexpr std::uint64_t kEveryPage = std::numeric_limits<PageNumber>::max();

struct UsageMap {
    std::vector<PageNumber> pages;        ///< ascending; may name pages beyond the end of the file
    std::vector<PageNumber> bitmapPages;  ///< the map's own pages
    std::uint64_t capacity = 0;           ///< pages below this number can be named
};

/// Reads a whole map; pages at or above `limit` are left out.  Throws 3428.
UsageMap ReadUsageMap(Pager& pager, RowPointer at, std::uint64_t limit);
/// The same, pages of the file only.
inline UsageMap ReadUsageMap(Pager& pager, RowPointer at) {
    return ReadUsageMap(pager, at, pager.PageCount());
}

/// The pages that hold a table's rows.  Throws 3428 when one of them lies behind the end of the file: its
/// rows are lost, and nobody should take the others for all there are.
std::vector<PageNumber> ReadRowPages(Pager& pager, RowPointer at);

/// The bytes of the row that a pointer names, followed over one move.  Throws 3428.
ByteVector ReadRowAt(Pager& pager, RowPointer at);

}  // namespace tavrel::jet
