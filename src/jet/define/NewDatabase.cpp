#include "jet/define/NewDatabase.h"

#include <algorithm>

#include "jet/catalog/NewDefinitionPages.h"
#include "jet/catalog/NewSystemTables.h"
#include "jet/index/IndexBuilder.h"
#include "jet/index/KeyEncoder.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

constexpr PageNumber kMapsPage = 1;
constexpr PageNumber kSystemMapsPage = 6;
constexpr PageNumber kFirstFreePage = 14;
constexpr std::size_t kMapHead = 5;  ///< kind and first page, before the bits

struct SortOrderCodePage {
    std::uint16_t sortOrder;
    std::uint16_t codePage;
};
constexpr SortOrderCodePage kCodePages[] = {
    {0x0404, 950},  {0x0409, 1252}, {0x040A, 1252}, {0x040C, 1252}, {0x0411, 932}, {0x0412, 949},
    {0x0418, 1250}, {0x041A, 1250}, {0x041B, 1250}, {0x041F, 1254}, {0x0804, 936}, {0x0C0A, 1252},
};

/// All pages behind those of the layout are free, those beyond the end of the file too.
void WriteGlobalMaps(Page& page) {
    ByteVector free(kMapRowBytes, 0xFF);
    std::fill_n(free.begin(), kMapHead, std::uint8_t{0});
    for (PageNumber taken = 0; taken < kFirstFreePage; ++taken) {
        auto& byte = free[kMapHead + taken / 8];
        byte = static_cast<std::uint8_t>(byte & ~(1U << (taken % 8)));
    }
    DataPageEditor editor(page);
    editor.Format(kMapsPage);
    editor.Append(free);
    editor.Append(ByteVector(kMapRowBytes, 0));
}

RowPointer NewSystemMap(PageAllocator& allocator) {
    PageNumber mapPage = kSystemMapsPage;
    return allocator.NewMap(mapPage);
}

/// Owned and free-space map, then two for each long-value column by number, then one for each index.
void GiveMaps(PageAllocator& allocator, TableDefinition& table) {
    table.ownedMap = NewSystemMap(allocator);
    table.freeMap = NewSystemMap(allocator);
    std::vector<LongValueMaps*> byNumber;
    for (LongValueMaps& maps : table.trailer) {
        byNumber.push_back(&maps);
    }
    std::ranges::sort(byNumber, {}, &LongValueMaps::column);
    for (LongValueMaps* maps : byNumber) {
        maps->owned = NewSystemMap(allocator);
        maps->free = NewSystemMap(allocator);
    }
    for (RealIndex& index : table.realIndexes) {
        index.map = NewSystemMap(allocator);
    }
}

}  // namespace

std::uint16_t CodePageOf(std::uint16_t sortOrder) {
    const auto* found = std::ranges::find(kCodePages, sortOrder, &SortOrderCodePage::sortOrder);
    if (found == std::end(kCodePages) || !IsKnownSortOrder(sortOrder)) {
        throw MakeError(errors::kUnknownSortWeight, {""}, "정렬 순서 " + std::to_string(sortOrder));
    }
    return found->codePage;
}

void LayOutNewDatabase(Pager& pager, PageAllocator& allocator, FileHeader& header) {
    for (PageNumber page = 0; page < kFirstFreePage; ++page) {
        pager.Fresh(page);
    }
    BuildHeader(header, pager.Write(0));
    WriteGlobalMaps(pager.Write(kMapsPage));
    DataPageEditor(pager.Write(kSystemMapsPage)).Format(0);
    for (TableDefinition& table : NewSystemTables(header.sortOrder)) {
        GiveMaps(allocator, table);
        for (const RealIndex& index : table.realIndexes) {
            allocator.Add(index.map, index.root);
            EntryArena none;
            BuildIndex(pager, allocator, table.page, index.map, index.root, none);
        }
        StoreDefinition(pager, allocator, table);
    }
}

}  // namespace tavrel::jet
