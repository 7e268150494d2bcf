#include "jet/catalog/NewDefinitionPages.h"

#include <algorithm>

#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

constexpr std::size_t kHead = 8;
constexpr std::size_t kPartBytes = kPageSize - kHead;

void FitPages(PageAllocator& allocator, TableDefinition& table, std::size_t count) {
    if (table.pages.empty()) {
        table.page = table.page != 0 ? table.page : allocator.Allocate();
        table.pages.push_back(table.page);
    }
    while (table.pages.size() < count) {
        table.pages.push_back(allocator.Allocate());
    }
    while (table.pages.size() > count) {
        allocator.Free(table.pages.back());
        table.pages.pop_back();
    }
}

void WritePart(Page& page, ByteView part, PageNumber next) {
    page.fill(0);
    page[0] = kPageTypeDefinition;
    page[1] = 1;
    PutU16(page, 2, static_cast<std::uint16_t>(kPartBytes - part.size()));
    PutU32(page, 4, next);
    std::ranges::copy(part, page.begin() + kHead);
}

}  // namespace

void StoreDefinition(Pager& pager, PageAllocator& allocator, TableDefinition& table) {
    const ByteVector bytes = BuildTableDefinition(table);
    FitPages(allocator, table, (bytes.size() + kPartBytes - 1) / kPartBytes);
    ByteView rest = bytes;
    for (std::size_t i = 0; i < table.pages.size(); ++i) {
        const ByteView part = rest.first(std::min(rest.size(), kPartBytes));
        rest = rest.subspan(part.size());
        WritePart(pager.Write(table.pages[i]), part, i + 1 < table.pages.size() ? table.pages[i + 1] : 0);
    }
}

}  // namespace tavrel::jet
