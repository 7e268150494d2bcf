// Builds a whole index from its entries: leaves filled one after the other, nodes above them.
#pragma once

#include "jet/index/EntryArena.h"
#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

struct BuiltIndex {
    PageNumber root = 0;
    std::uint32_t distinctKeys = 0;
};

/// Sorts the entries and writes the tree.  Pages are taken from the allocator and added to the index's map.
/// `root`, when not 0, becomes the root page: it is allocated already and stands in the map.  Whether a
/// unique index has duplicates is the caller's question (EntryArena::FirstDuplicate).
BuiltIndex BuildIndex(Pager& pager, PageAllocator& allocator, PageNumber tablePage, RowPointer map,
                      PageNumber root, EntryArena& entries);

}  // namespace tavrel::jet
