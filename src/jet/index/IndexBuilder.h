// Builds a whole index from its entries: leaves filled one after the other, nodes above them.
#pragma once

#include <vector>

#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

struct BuiltIndex {
    PageNumber root = 0;
    std::uint32_t distinctKeys = 0;
};

/// `entries` (key + u24 BE page + u8 row each) need not be sorted; they are sorted in place.  Pages are taken from the
/// allocator and added to the map; `root`, when not 0, is used as the root page.
BuiltIndex BuildIndex(Pager& pager, PageAllocator& allocator, PageNumber tablePage, RowPointer map, PageNumber root,
                      std::vector<ByteVector>& entries);

}  // namespace tavrel::jet
