#include "jet/storage/UsageMap.h"

#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

/// Appends the numbers of the set bits, first + k, that are below the limit.
void CollectBits(ByteView bits, std::uint64_t first, std::uint64_t limit, std::vector<PageNumber>& pages) {
    for (std::size_t i = 0; i < bits.size(); ++i) {
        for (unsigned bit = 0; bits[i] >> bit != 0; ++bit) {
            const std::uint64_t page = first + 8 * i + bit;
            if ((bits[i] >> bit & 1) != 0 && page < limit) {
                pages.push_back(static_cast<PageNumber>(page));
            }
        }
    }
}

void ReadBitmapPages(Pager& pager, ByteView row, std::uint64_t limit, UsageMap& map) {
    const std::size_t count = std::min((row.size() - 1) / 4, kMapMaxBitmaps);
    for (std::size_t k = 0; k < count; ++k) {
        const PageNumber number = U32(row, 1 + 4 * k);
        if (number == 0) {
            continue;
        }
        const PageRef page = pager.Read(number);
        if (page.Bytes()[0] != kPageTypeMap) {
            ThrowDamaged("페이지 " + std::to_string(number) + "이(가) 사용 지도 페이지가 아님");
        }
        map.bitmapPages.push_back(number);
        map.capacity = (k + 1) * std::uint64_t{kMapPagesPerBitmap};
        CollectBits(page.Bytes().subspan(4), k * std::uint64_t{kMapPagesPerBitmap}, limit, map.pages);
    }
}

}  // namespace

UsageMap ReadUsageMap(Pager& pager, RowPointer at, std::uint64_t limit) {
    const ByteVector row = ReadRowAt(pager, at);
    UsageMap map;
    switch (U8(row, 0)) {
        case 0: {
            const std::uint32_t first = U32(row, 1);
            map.capacity = first + 8 * std::uint64_t{row.size() - 5};
            CollectBits(ByteView(row).subspan(5), first, limit, map.pages);
            break;
        }
        case 1:
            ReadBitmapPages(pager, row, limit, map);
            break;
        default:
            ThrowDamaged("알 수 없는 사용 지도 종류 " + std::to_string(row[0]));
    }
    return map;
}

std::vector<PageNumber> ReadRowPages(Pager& pager, RowPointer at) {
    UsageMap map = ReadUsageMap(pager, at, kEveryPage);
    if (!map.pages.empty() && map.pages.back() >= pager.PageCount()) {
        ThrowDamaged("파일의 끝이 잘림: 페이지 " + std::to_string(map.pages.back()) + "이(가) 없음");
    }
    return std::move(map.pages);
}

ByteVector ReadRowAt(Pager& pager, RowPointer at) {
    const PageRef page = pager.Read(at.page);
    Slot slot = DataPageView(page).At(at.row);
    if (slot.flags != kSlotMoved) {
        return {slot.row.begin(), slot.row.end()};
    }
    const RowPointer target = RowPointer::FromU32(U32(slot.row, 0));
    const PageRef targetPage = pager.Read(target.page);
    slot = DataPageView(targetPage).At(target.row);
    if (slot.flags == kSlotMoved) {
        ThrowDamaged("옮겨진 행이 다시 옮겨짐");
    }
    return {slot.row.begin(), slot.row.end()};
}

}  // namespace tavrel::jet
