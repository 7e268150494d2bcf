#include "jet/compact/LostPages.h"

#include <algorithm>

#include "jet/storage/DataPage.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet::compact {

std::uint64_t LiveRows(ByteView page, PageNumber table) {
    try {
        const DataPageView view(page);
        std::uint64_t rows = 0;
        for (unsigned slot = 0; view.Owner() == table && slot < view.SlotCount(); ++slot) {
            rows += (view.At(slot).flags & kSlotHidden) == 0 ? 1 : 0;
        }
        return rows;
    } catch (const Error&) {
        return 0;
    }
}

std::vector<bool> FreePages(Pager& pager) {
    std::vector<bool> free(pager.PageCount());
    for (const std::uint8_t row : {0, 1}) {
        try {
            for (const PageNumber page : ReadUsageMap(pager, {1, row}).pages) {
                free[page] = true;
            }
        } catch (const Error& error) {
            RequireDamage(error);
            // Nothing is known to be free then.
        }
    }
    return free;
}

void LostPages::AddTable(const TableDefinition& table, std::uint64_t rows) {
    tables_[table.page].missing = table.rowCount > rows ? table.rowCount - rows : 0;
    for (const RealIndex& index : table.realIndexes) {
        for (const PageNumber page : ReadUsageMap(pages_.Cache(), index.map).pages) {
            pages_.Mark(page);
        }
    }
}

bool LostPages::AnyHasLostRows() {
    const std::vector<bool> free = FreePages(pages_.Cache());
    for (PageNumber number = 0; number < pages_.Count(); ++number) {
        if (pages_.Met(number) || free[number]) {
            continue;
        }
        const PageRef page = pages_.Cache().Read(number);
        const auto table = page.Bytes()[0] == kPageTypeData ? tables_.find(U32(page, 4)) : tables_.end();
        if (table != tables_.end()) {
            table->second.lost += LiveRows(page, table->first);
        }
    }
    return std::ranges::any_of(tables_, [](const auto& entry) {
        return entry.second.lost > 0 && entry.second.lost == entry.second.missing;
    });
}

}  // namespace tavrel::jet::compact
