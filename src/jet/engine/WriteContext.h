// What everything that writes into one database shares.
#pragma once

#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

struct WriteContext {
    Pager& pager;
    PageAllocator& allocator;
    std::uint32_t ownerKey = 0;  ///< enciphers Owner and SID values
    std::uint32_t nextMark = 1;  ///< of the next long-value chain; never 0
    bool broken = false;  ///< a write failed half way: what is in memory must not be taken for a database
};

}  // namespace tavrel::jet
