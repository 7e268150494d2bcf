// What everything that writes into one database shares.
#pragma once

#include <set>
#include <string>

#include "jet/index/KeyEncoder.h"
#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

struct WriteContext {
    Pager& pager;
    PageAllocator& allocator;
    std::uint32_t ownerKey = 0;                       ///< enciphers Owner and SID values
    std::uint32_t nextMark = 1;                       ///< of the next long-value chain; never 0
    UnknownWeights unknown = UnknownWeights::Refuse;  ///< in indexes of user tables
    std::set<std::string> standIns;                   ///< tables whose indexes got stand-in weights
    bool broken = false;  ///< a write failed half way: what is in memory must not be taken for a database
};

}  // namespace tavrel::jet
