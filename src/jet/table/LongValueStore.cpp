#include "jet/table/LongValueStore.h"

#include <algorithm>

#include "jet/storage/UsageMap.h"

namespace tavrel::jet {

LongValueStore::LongValueStore(Pager& pager, PageAllocator& allocator, const Column& column,
                               std::uint32_t& nextMark)
    : pager_(pager),
      rows_(pager, allocator, kOwnerLongValues, column.ownedMap, column.freeMap),
      nextMark_(nextMark) {}

ByteVector LongValueStore::Store(const PreparedLongValue& value) {
    if (value.kind == kLongInline) {
        return value.Descriptor();
    }
    if (value.kind == kLongOneRow) {
        return value.Descriptor(rows_.Insert(value.bytes));
    }
    const std::uint32_t mark = nextMark_++;
    return value.Descriptor(StoreChain(value.bytes, mark), mark);
}

/// From the last part to the first, since each names the next.
RowPointer LongValueStore::StoreChain(ByteView bytes, std::uint32_t mark) {
    RowPointer next{};
    ByteVector part;
    std::size_t end = bytes.size();
    while (end > 0) {
        const std::size_t start = (end - 1) / kLongPartBytes * kLongPartBytes;
        part.clear();
        AppendU32(part, next.ToU32());
        AppendBytes(part, bytes.subspan(start, end - start));
        next = rows_.InsertAlone(part, start == 0 ? mark : 0);
        end = start;
    }
    return next;
}

void LongValueStore::Free(ByteView descriptor) {
    const std::uint32_t kind = U32(descriptor, 0) & ~kLongLengthMask;
    RowPointer at = RowPointer::FromU32(U32(descriptor, 4));
    if (kind == kLongInline) {
        return;
    }
    if (kind == kLongOneRow) {
        rows_.Delete(at);
        return;
    }
    for (PageNumber parts = 0; at.ToU32() != 0; ++parts) {
        if (parts > pager_.PageCount()) {
            ThrowDamaged("긴 값의 연결이 되풀이됨");
        }
        const RowPointer next = RowPointer::FromU32(U32(ReadRowAt(pager_, at), 0));
        rows_.Delete(at);
        at = next;
    }
}

}  // namespace tavrel::jet
