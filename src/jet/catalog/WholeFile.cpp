#include "jet/catalog/WholeFile.h"

#include "jet/storage/UsageMap.h"

namespace tavrel::jet {

namespace {

constexpr RowPointer kFreePages{1, 0};

/// The free map calls pages taken that the file does not have.
bool EndsEarly(Pager& pager) {
    const UsageMap free = ReadUsageMap(pager, kFreePages, kEveryPage);
    std::uint64_t end = free.capacity;  // behind the last page that is not free
    for (auto page = free.pages.rbegin(); page != free.pages.rend() && *page + std::uint64_t{1} == end;
         ++page) {
        --end;
    }
    return end > pager.PageCount();
}

std::vector<RowPointer> MapsOf(const TableDefinition& table) {
    std::vector<RowPointer> maps = {table.ownedMap, table.freeMap};
    for (const Column& column : table.columns) {
        if (column.hasMaps) {
            maps.insert(maps.end(), {column.ownedMap, column.freeMap});
        }
    }
    for (const RealIndex& index : table.realIndexes) {
        maps.push_back(index.map);
    }
    return maps;
}

/// The highest page that a table names: its definition's or one in its maps.
PageNumber LastPageOf(Pager& pager, Catalog& catalog, PageNumber definition) {
    PageNumber last = definition;
    if (definition < pager.PageCount()) {
        for (const RowPointer map : MapsOf(catalog.Definition(definition))) {
            if (map.page == 0) {
                continue;  // tables of some programs have no map of the free space
            }
            const UsageMap pages = ReadUsageMap(pager, map, kEveryPage);
            last = pages.pages.empty() ? last : std::max(last, pages.pages.back());
        }
    }
    return last;
}

/// A table that is damaged by other means does not keep others from being changed.
PageNumber LastPageOrNone(Pager& pager, Catalog& catalog, PageNumber definition) {
    try {
        return LastPageOf(pager, catalog, definition);
    } catch (const Error& error) {
        if (error.Number() != errors::kDamaged) {
            throw;
        }
        return 0;
    }
}

}  // namespace

void RequireWholeFile(Pager& pager, Catalog& catalog) {
    const bool endsEarly = EndsEarly(pager);
    for (const CatalogObject& object : catalog.Objects()) {
        if (!object.IsTable()) {
            continue;
        }
        const PageNumber page = object.DefinitionPage();
        const PageNumber last =
            endsEarly ? LastPageOf(pager, catalog, page) : LastPageOrNone(pager, catalog, page);
        if (last >= pager.PageCount()) {
            ThrowDamaged("파일의 끝이 잘림: 테이블 " + object.name + "의 페이지 " + std::to_string(last) +
                         "이(가) 없음");
        }
    }
}

}  // namespace tavrel::jet
