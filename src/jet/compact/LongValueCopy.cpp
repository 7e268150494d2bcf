#include "jet/compact/LongValueCopy.h"

#include <algorithm>

#include "jet/storage/LongValue.h"

namespace tavrel::jet::compact {

namespace {

constexpr std::size_t kDescriptorBytes = 12;
constexpr std::size_t kLinkBytes = 4;

void PutDescriptor(std::span<std::uint8_t> descriptor, std::uint32_t lengthAndKind, RowPointer at,
                   std::uint32_t mark) {
    PutU32(descriptor, 0, lengthAndKind);
    PutU32(descriptor, 4, at.ToU32());
    PutU32(descriptor, 8, mark);
}

}  // namespace

/// The bytes of a row of a long-value page.  `mark` is what the page must carry, 0 for one that begins no
/// chain.
ByteView LongValueCopy::PartAt(RowPointer at, std::uint32_t mark) {
    page_ = source_.Read(at.page);
    const DataPageView view(*page_);
    if (view.Owner() != kOwnerLongValues || view.ChainMark() != mark) {
        ThrowDamaged("긴 값의 페이지 " + std::to_string(at.page) + "이(가) 그 값의 것이 아님");
    }
    if (!seen_[at.page]) {
        seen_[at.page] = true;
        for (unsigned slot = 0; slot < view.SlotCount(); ++slot) {
            if (view.At(slot).flags == 0) {
                present_.Add({at.page, static_cast<std::uint8_t>(slot)});
            }
        }
    }
    const Slot slot = view.At(at.row);
    if (slot.flags != 0) {
        ThrowDamaged("긴 값의 행이 지워졌거나 옮겨짐");
    }
    copied_.Add(at);
    return slot.row;
}

void LongValueCopy::Copy(std::span<std::uint8_t> descriptor, LongValuesOutput& out, bool shorten) {
    const std::uint32_t lengthAndKind = U32(descriptor, 0);
    const std::uint32_t length = lengthAndKind & kLongLengthMask;
    const std::uint32_t kind = lengthAndKind & ~kLongLengthMask;
    const RowPointer at = RowPointer::FromU32(U32(descriptor, 4));
    const std::uint32_t mark = U32(descriptor, 8);
    if (kind == kLongInline) {
        Slice(descriptor, kDescriptorBytes, length);
        return;
    }
    if (kind != 0 && kind != kLongOneRow) {
        ThrowDamaged("긴 값의 종류를 알 수 없음");
    }
    if (kind == kLongOneRow) {
        const ByteView value = PartAt(at, 0);
        if (value.size() != length) {
            ThrowDamaged("긴 값의 길이가 다름");
        }
        PutDescriptor(descriptor, lengthAndKind, out.AppendRow(value), 0);
    } else if (shorten && length <= kLongMaxOneRow) {
        PutDescriptor(descriptor, length | kLongOneRow, out.AppendRow(ReadChain(at, length, mark)), 0);
    } else {
        const std::uint32_t newMark = nextMark_++;
        PutDescriptor(descriptor, length, CopyChain(at, length, mark, out, newMark), newMark);
    }
}

ByteVector LongValueCopy::ReadChain(RowPointer at, std::uint32_t length, std::uint32_t mark) {
    ByteVector value;
    for (; at.ToU32() != 0 && value.size() <= length; mark = 0) {
        const ByteView part = PartAt(at, mark);
        AppendBytes(value, Slice(part, kLinkBytes, part.size() - kLinkBytes));
        at = RowPointer::FromU32(U32(part, 0));
    }
    if (value.size() != length || at.ToU32() != 0) {
        ThrowDamaged("긴 값의 길이가 다름");
    }
    return value;
}

/// Parts need not be full in the old file; in the new one they are.
RowPointer LongValueCopy::CopyChain(RowPointer at, std::uint32_t length, std::uint32_t mark,
                                    LongValuesOutput& out, std::uint32_t newMark) {
    const RowPointer begin = out.BeginChain(newMark);
    ByteVector waiting;
    std::uint64_t read = 0;
    std::uint64_t written = 0;
    const auto write = [&](std::size_t bytes) {
        written += bytes;
        out.AppendPart(ByteView(waiting).first(bytes), written == length);
        waiting.erase(waiting.begin(), waiting.begin() + static_cast<std::ptrdiff_t>(bytes));
    };
    for (; at.ToU32() != 0; mark = 0) {
        const ByteView part = PartAt(at, mark);
        const ByteView data = part.subspan(std::min(part.size(), kLinkBytes));
        read += data.size();
        if (data.empty() || read > length) {
            ThrowDamaged("긴 값의 길이가 다름");
        }
        AppendBytes(waiting, data);
        at = RowPointer::FromU32(U32(part, 0));
        while (waiting.size() > kLongPartBytes) {
            write(kLongPartBytes);
        }
    }
    if (read != length || length == 0) {
        ThrowDamaged("긴 값의 길이가 다름");
    }
    write(waiting.size());
    return begin;
}

}  // namespace tavrel::jet::compact
