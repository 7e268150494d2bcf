#include "jet/storage/PageAllocator.h"

#include <algorithm>

#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

constexpr RowPointer kFreeMap{1, 0};
constexpr PageNumber kMaxPages = 0x80000000 / kPageSize;  // two gigabytes
constexpr std::size_t kInlineBits = 5;                    // where the bitmap starts in an inline row

/// The map's row as it lies in its page.
ByteView MapRow(const PageRef& page, RowPointer map) {
    const Slot slot = DataPageView(page).At(map.row);
    if (slot.flags != 0 || slot.row.size() < kInlineBits) {
        ThrowDamaged("사용 지도 행이 잘못됨");
    }
    return slot.row;
}

/// Number of the lowest set bit at or above `from` in a bitmap; `bits.size() * 8` when there is none.
std::size_t LowestBit(ByteView bits, std::size_t from) {
    for (std::size_t bit = from; bit < bits.size() * 8;) {
        const unsigned rest = bits[bit / 8] >> (bit % 8);
        if (rest == 0) {
            bit = (bit / 8 + 1) * 8;
        } else if ((rest & 1) != 0) {
            return bit;
        } else {
            ++bit;
        }
    }
    return bits.size() * 8;
}

void WriteBit(std::span<std::uint8_t> bits, std::size_t bit, bool value) {
    const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
    bits[bit / 8] = static_cast<std::uint8_t>(value ? bits[bit / 8] | mask : bits[bit / 8] & ~mask);
}

void FormatBitmapPage(Page& page, bool fill) {
    page.fill(fill ? 0xFF : 0);
    PutU32(page, 0, kPageTypeMap | 0x100);
}

}  // namespace

PageNumber PageAllocator::Allocate() {
    PageNumber page = Lowest();
    if (page < kMaxPages && !FreeMapNames(page)) {
        // The map grows first: its new bitmap page takes the very place that was found.
        SetBitmapBit(kFreeMap, page, true);
        page = Lowest();
    }
    if (page >= kMaxPages) {
        throw MakeError(errors::kDatabaseTooLarge);
    }
    SetBit(kFreeMap, page, false);
    hint_ = page + 1;
    pager_.Fresh(page);
    return page;
}

/// The lowest page to be had.  One behind the end of the file that is not free was taken by a program that
/// never wrote it: nobody has it.
PageNumber PageAllocator::Lowest() {
    const PageNumber free = LowestFree();
    const PageNumber end = pager_.PageCount();
    if (free > end) {
        TakeFromPending(end);
        return end;
    }
    return free;
}

/// Pages that were taken and never written may wait in the other global map to be given back.
void PageAllocator::TakeFromPending(PageNumber page) {
    constexpr RowPointer kPendingMap{1, 1};
    const PageRef maps = pager_.Read(kPendingMap.page);
    if (DataPageView(maps).SlotCount() > kPendingMap.row &&
        std::ranges::binary_search(ReadUsageMap(pager_, kPendingMap, kEveryPage).pages, page)) {
        SetBit(kPendingMap, page, false);
    }
}

/// The lowest free page; the first page that the map cannot name when none is set.
PageNumber PageAllocator::LowestFree() {
    const PageRef mapPage = pager_.Read(kFreeMap.page);
    const ByteView row = MapRow(mapPage, kFreeMap);
    if (row[0] == 0) {
        const PageNumber first = U32(row, 1);
        const std::size_t from = hint_ > first ? hint_ - first : 0;
        return std::max(first + static_cast<PageNumber>(LowestBit(row.subspan(kInlineBits), from)), hint_);
    }
    for (std::size_t k = hint_ / kMapPagesPerBitmap; k < kMapMaxBitmaps; ++k) {
        const auto base = static_cast<PageNumber>(k * kMapPagesPerBitmap);
        const PageNumber number = U32(row, 1 + 4 * k);
        if (number == 0) {
            return std::max(base, hint_);  // never described: everything there is free
        }
        const PageRef bitmap = pager_.Read(number);
        const std::size_t from = hint_ > base ? hint_ - base : 0;
        const std::size_t bit = LowestBit(bitmap.Bytes().subspan(4), from);
        if (bit < kMapPagesPerBitmap) {
            return base + static_cast<PageNumber>(bit);
        }
    }
    return kMaxPages;
}

bool PageAllocator::FreeMapNames(PageNumber page) {
    const PageRef mapPage = pager_.Read(kFreeMap.page);
    const ByteView row = MapRow(mapPage, kFreeMap);
    if (row[0] == 0) {
        return page - U32(row, 1) < (row.size() - kInlineBits) * 8;
    }
    return U32(row, 1 + 4 * (page / kMapPagesPerBitmap)) != 0;
}

void PageAllocator::Free(PageNumber page) {
    SetBit(kFreeMap, page, true);
    hint_ = std::min(hint_, page);
}

void PageAllocator::Add(RowPointer map, PageNumber page) {
    SetBit(map, page, true);
}

void PageAllocator::Remove(RowPointer map, PageNumber page) {
    SetBit(map, page, false);
}

void PageAllocator::SetBit(RowPointer map, PageNumber page, bool value) {
    {
        const PageRef mapPage = pager_.Read(map.page);
        const ByteView row = MapRow(mapPage, map);
        if (row[0] == 0) {
            const PageNumber first = U32(row, 1);
            const std::size_t offset =
                static_cast<std::size_t>(row.data() - mapPage.Bytes().data()) + kInlineBits;
            const std::size_t room = (row.size() - kInlineBits) * 8;
            if (page >= first && page - first < room) {
                WriteBit(std::span(pager_.Write(map.page)).subspan(offset, room / 8), page - first, value);
                return;
            }
        } else if (row[0] != 1) {
            ThrowDamaged("알 수 없는 사용 지도 종류 " + std::to_string(row[0]));
        }
    }
    SetBitmapBit(map, page, value);
}

/// Sets the bit in a map with bitmap pages, making the map one first when it is inline.
void PageAllocator::SetBitmapBit(RowPointer map, PageNumber page, bool value) {
    const bool isFreeMap = map == kFreeMap;
    ConvertToBitmaps(map);
    const std::size_t k = page / kMapPagesPerBitmap;
    const PageNumber bitmap = BitmapPage(map, k);
    if (bitmap == 0) {
        if (!value && !isFreeMap) {
            return;  // not in the set anyway
        }
        AddBitmapPage(map, k, isFreeMap);
    }
    const PageNumber number = BitmapPage(map, k);
    if (isFreeMap && number == page) {
        return;  // a map's own page is never free
    }
    WriteBit(std::span(pager_.Write(number)).subspan(4), page % kMapPagesPerBitmap, value);
}

PageNumber PageAllocator::BitmapPage(RowPointer map, std::size_t k) {
    const PageRef mapPage = pager_.Read(map.page);
    const ByteView row = MapRow(mapPage, map);
    return k < kMapMaxBitmaps ? U32(row, 1 + 4 * k) : (ThrowDamaged("사용 지도의 범위를 벗어난 페이지"), 0);
}

/// Gives the map its k-th bitmap page.  The free map cannot ask itself for a page: its own bitmap pages come
/// from the end of the file and are marked as taken in the bitmap that covers them.
void PageAllocator::AddBitmapPage(RowPointer map, std::size_t k, bool fill) {
    PageNumber number = 0;
    if (map == kFreeMap) {
        number = pager_.PageCount();
        pager_.Fresh(number);
    } else {
        number = Allocate();
    }
    FormatBitmapPage(pager_.Write(number), fill);
    std::size_t offset = 0;
    {
        const PageRef mapPage = pager_.Read(map.page);
        const ByteView row = MapRow(mapPage, map);
        offset = static_cast<std::size_t>(row.data() - mapPage.Bytes().data());
    }
    PutU32(pager_.Write(map.page), offset + 1 + 4 * k, number);
    if (map == kFreeMap) {
        const PageNumber cover = BitmapPage(map, number / kMapPagesPerBitmap);
        WriteBit(std::span(pager_.Write(cover)).subspan(4), number % kMapPagesPerBitmap, false);
    }
}

/// An inline map becomes one with bitmap pages.  The row keeps its length.
void PageAllocator::ConvertToBitmaps(RowPointer map) {
    std::size_t offset = 0;
    std::size_t length = 0;
    {
        const PageRef mapPage = pager_.Read(map.page);
        const ByteView row = MapRow(mapPage, map);
        if (row[0] != 0) {
            return;
        }
        if (row.size() < kMapRowBytes) {
            ThrowDamaged("사용 지도 행이 너무 짧음");
        }
        offset = static_cast<std::size_t>(row.data() - mapPage.Bytes().data());
        length = row.size();
    }
    const UsageMap old = ReadUsageMap(pager_, map, kMaxPages + kMapPagesPerBitmap);
    Page& page = pager_.Write(map.page);
    std::fill_n(page.begin() + static_cast<std::ptrdiff_t>(offset), length, std::uint8_t{0});
    page[offset] = 1;
    if (map == kFreeMap) {
        // Pages that the inline map could not name were free.
        AddBitmapPage(map, 0, true);
        const PageNumber bitmap = BitmapPage(map, 0);
        Page& bits = pager_.Write(bitmap);
        for (PageNumber n = 0; n < old.capacity && n < kMapPagesPerBitmap; ++n) {
            WriteBit(std::span(bits).subspan(4), n, false);
        }
    }
    for (const PageNumber n : old.pages) {
        SetBitmapBit(map, n, true);
    }
}

RowPointer PageAllocator::NewMap(PageNumber& mapPage) {
    const ByteVector empty(kMapRowBytes, 0);
    if (mapPage != 0) {
        DataPageEditor editor(pager_.Write(mapPage));
        if (editor.Fits(empty.size())) {
            return {mapPage, editor.Append(empty)};
        }
    }
    mapPage = Allocate();
    DataPageEditor editor(pager_.Write(mapPage));
    editor.Format(0);
    return {mapPage, editor.Append(empty)};
}

}  // namespace tavrel::jet
