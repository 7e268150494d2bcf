#include "jet/storage/LongValue.h"

#include "jet/storage/DataPage.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet {

namespace {

constexpr std::size_t kDescriptorBytes = 12;
constexpr std::size_t kLinkBytes = 4;

/// A part's row, which is neither moved nor deleted.
Slot PartAt(const PageRef& page, RowPointer at) {
    const Slot slot = DataPageView(page).At(at.row);
    if (slot.flags != 0) {
        ThrowDamaged("긴 값의 행이 지워졌거나 옮겨짐");
    }
    return slot;
}

ByteVector ReadChain(Pager& pager, RowPointer at, std::uint32_t length) {
    ByteVector value;
    // A chain takes a page for each part, so that more parts than pages mean a circle.
    PageNumber parts = 0;
    while (at.ToU32() != 0 && value.size() < length) {
        if (++parts > pager.PageCount()) {
            ThrowDamaged("긴 값의 연결이 되풀이됨");
        }
        const PageRef page = pager.Read(at.page);
        const Slot slot = PartAt(page, at);
        if (slot.row.size() <= kLinkBytes) {
            ThrowDamaged("긴 값의 조각이 비어 있음");
        }
        AppendBytes(value, slot.row.subspan(kLinkBytes));
        at = RowPointer::FromU32(U32(slot.row, 0));
    }
    return value;
}

}  // namespace

std::uint32_t LongValueLength(ByteView descriptor) {
    return U32(descriptor, 0) & kLongLengthMask;
}

ByteVector ReadLongValue(Pager& pager, ByteView descriptor) {
    const std::uint32_t length = LongValueLength(Slice(descriptor, 0, kDescriptorBytes));
    const std::uint32_t kind = U32(descriptor, 0) & ~kLongLengthMask;
    const RowPointer at = RowPointer::FromU32(U32(descriptor, 4));
    ByteVector value;
    if (kind == kLongInline) {
        const ByteView inlineValue = Slice(descriptor, kDescriptorBytes, length);
        return {inlineValue.begin(), inlineValue.end()};
    }
    if (kind == kLongOneRow) {
        const PageRef page = pager.Read(at.page);
        const Slot slot = PartAt(page, at);
        value.assign(slot.row.begin(), slot.row.end());
    } else if (kind == 0) {
        value = ReadChain(pager, at, length);
    } else {
        ThrowDamaged("긴 값의 종류를 알 수 없음");
    }
    if (value.size() < length) {
        ThrowDamaged("긴 값이 " + std::to_string(length) + "바이트 중 " + std::to_string(value.size()) +
                     "바이트뿐임");
    }
    value.resize(length);
    return value;
}

}  // namespace tavrel::jet
