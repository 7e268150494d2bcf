#include "jet/table/LongValueWriter.h"

#include <algorithm>

#include "jet/table/StoredText.h"

namespace tavrel::jet {

namespace {

std::uint32_t KindFor(std::size_t plainBytes) {
    if (plainBytes > kLongLengthMask) {
        throw MakeError(errors::kRecordTooLarge, {}, "긴 값 " + std::to_string(plainBytes) + "바이트");
    }
    if (plainBytes <= kLongMaxInline) {
        return kLongInline;
    }
    return plainBytes <= kLongMaxOneRow ? kLongOneRow : 0;
}

}  // namespace

ByteVector PreparedLongValue::Descriptor(RowPointer at, std::uint32_t mark) const {
    ByteVector out;
    AppendU32(out, static_cast<std::uint32_t>(bytes.size()) | kind);
    AppendU32(out, at.ToU32());
    AppendU32(out, mark);
    if (kind == kLongInline) {
        AppendBytes(out, bytes);
    }
    return out;
}

PreparedLongValue PrepareMemo(std::u16string_view text, bool compress) {
    const std::uint32_t kind = KindFor(text.size() * 2);
    const bool pack = kind == kLongInline || (kind == kLongOneRow && compress);
    ByteVector bytes = StoredText(text, pack, TextKind::Memo);
    // Only a text that had to be compressed can have grown.
    return {kind == kLongOneRow && bytes.size() > kLongMaxOneRow ? 0 : kind, std::move(bytes)};
}

PreparedLongValue PrepareOle(ByteVector bytes) {
    const std::uint32_t kind = KindFor(bytes.size());
    return {kind, std::move(bytes)};
}

LongValueWriter::LongValueWriter(Pager& pager, PageAllocator& allocator, const Column& column,
                                 std::uint32_t& nextMark)
    : rows_(pager, allocator, kOwnerLongValues, column.ownedMap, column.freeMap), nextMark_(nextMark) {}

ByteVector LongValueWriter::Store(const PreparedLongValue& value) {
    if (value.kind == kLongOneRow) {
        return value.Descriptor(rows_.Append(value.bytes));
    }
    const std::uint32_t mark = nextMark_++;
    return value.Descriptor(StoreChain(value.bytes, mark), mark);
}

RowPointer LongValueWriter::StoreChain(ByteView bytes, std::uint32_t mark) {
    PageNumber page = rows_.TakeAlone(mark);
    const RowPointer first{page, 0};
    ByteVector part;
    while (!bytes.empty()) {
        const ByteView data = bytes.first(std::min(bytes.size(), kLongPartBytes));
        bytes = bytes.subspan(data.size());
        const PageNumber next = bytes.empty() ? 0 : rows_.TakeAlone(0);
        part.clear();
        AppendU32(part, RowPointer{next, 0}.ToU32());
        AppendBytes(part, data);
        rows_.PutAlone(page, part);
        page = next;
    }
    return first;
}

}  // namespace tavrel::jet
