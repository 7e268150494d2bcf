#include "jet/index/IndexPage.h"

#include <bit>

#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

constexpr std::size_t kMinLeafEntry = 4;
constexpr std::size_t kMinNodeEntry = 8;

/// Where the entries end, counted from the first one's start, ascending.
std::vector<std::size_t> EntryEnds(ByteView page) {
    std::vector<std::size_t> ends;
    for (std::size_t byte = kIndexMask; byte < kIndexEntries; ++byte) {
        for (unsigned bits = page[byte]; bits != 0; bits &= bits - 1) {
            ends.push_back((byte - kIndexMask) * 8 + static_cast<std::size_t>(std::countr_zero(bits)));
        }
    }
    if (!ends.empty() && (ends.front() == 0 || ends.back() > kIndexRoom)) {
        ThrowDamaged("인덱스 페이지의 항목 표시가 잘못됨");
    }
    return ends;
}

IndexPageContent ReadFrame(ByteView page) {
    IndexPageContent content;
    if (page.size() != kPageSize || (page[0] != kPageTypeLeaf && page[0] != kPageTypeNode)) {
        ThrowDamaged("인덱스 페이지가 아님");
    }
    content.leaf = page[0] == kPageTypeLeaf;
    content.freeField = U16(page, 0x02);
    content.owner = U32(page, 0x04);
    content.reserved = U32(page, 0x08);
    content.previous = U32(page, 0x0C);
    content.next = U32(page, 0x10);
    content.tail = U32(page, 0x14);
    content.prefix = U16(page, 0x18);
    content.level = page[0x1A];
    return content;
}

}  // namespace

IndexPageContent ReadIndexPage(ByteView page) {
    IndexPageContent content = ReadFrame(page);
    const std::vector<std::size_t> ends = EntryEnds(page);
    content.used = ends.empty() ? 0 : ends.back();
    if (!ends.empty() && content.prefix > ends.front()) {
        ThrowDamaged("인덱스 페이지의 공통 부분이 첫 항목보다 김");
    }
    const ByteView shared = page.subspan(kIndexEntries, ends.empty() ? 0 : content.prefix);
    const std::size_t shortest = content.leaf ? kMinLeafEntry : kMinNodeEntry;
    content.entries.reserve(ends.size());
    std::size_t start = 0;
    for (const std::size_t end : ends) {
        const ByteView omitted = start == 0 ? ByteView() : shared;
        if (omitted.size() + end - start < shortest) {
            ThrowDamaged("인덱스 항목이 너무 짧음");
        }
        ByteVector& entry = content.entries.emplace_back();
        entry.reserve(omitted.size() + end - start);
        AppendBytes(entry, omitted);
        AppendBytes(entry, page.subspan(kIndexEntries + start, end - start));
        start = end;
    }
    return content;
}

}  // namespace tavrel::jet
