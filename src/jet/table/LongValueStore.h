// Memo and OLE values of one column, put in and taken out one at a time.
#pragma once

#include "jet/storage/TableRows.h"
#include "jet/table/LongValueWriter.h"

namespace tavrel::jet {

class LongValueStore {
  public:
    /// `column` must have maps.  `nextMark` counts the chains of the whole database.
    LongValueStore(Pager& pager, PageAllocator& allocator, const Column& column, std::uint32_t& nextMark);

    /// Stores a value and returns its descriptor, which holds the value itself when that is inline.
    ByteVector Store(const PreparedLongValue& value);
    /// Gives back the room of a value outside the row.  Throws 3428 when its parts are not there.
    void Free(ByteView descriptor);
    void Reset() { rows_.Reset(); }

  private:
    RowPointer StoreChain(ByteView bytes, std::uint32_t mark);

    Pager& pager_;
    TableRows rows_;
    std::uint32_t& nextMark_;
};

}  // namespace tavrel::jet
