#include "jet/engine/check/TableCheck.h"

#include <algorithm>
#include <set>

#include "jet/engine/check/DataPageCheck.h"
#include "jet/engine/check/DefinitionCheck.h"
#include "jet/engine/check/IndexDefinitionCheck.h"
#include "jet/engine/check/IndexEntries.h"
#include "jet/engine/check/IndexTree.h"
#include "jet/engine/check/Places.h"
#include "jet/engine/check/RowCheck.h"
#include "jet/engine/check/RowScan.h"

namespace tavrel::jet::check {

namespace {
/// No table of an engine comes near it; beyond, the work for each row would have no bound.
constexpr std::size_t kIndexLimit = 255;
}  // namespace

TableCheck::TableCheck(Context& context, const std::string& name, const TableDefinition& table, bool system)
    : context_(context),
      log_(context.log),
      name_(name),
      where_(TablePlace(name)),
      table_(table),
      shape_(table.Shape()),
      system_(system) {}

void TableCheck::Run() {
    const auto guard = [this](auto&& step) { Guard(log_, FindingKind::Unreadable, where_, step); };
    guard([&] { DefinitionCheck(context_, where_, table_).Run(system_); });
    guard([&] { CheckIndexDefinitions(log_, where_, table_, context_.header.sortOrder); });
    std::vector<PageNumber> pages;
    guard([&] { pages = CheckPages(); });
    guard([&] { ReadLongMaps(); });
    RowList rows;
    guard([&] { rows = CheckRows(pages); });
    if (rows.Size() != table_.rowCount) {
        log_.Add(FindingKind::RowCount, where_, {Number(table_.rowCount), Number(rows.Size())});
    }
    for (LongValueCheck& longValue : longValues_) {
        guard([&] { longValue.CheckUse(); });
    }
    if (table_.realIndexes.size() > kIndexLimit) {
        log_.Add(FindingKind::IndexLimit, where_, {Number(table_.realIndexes.size())});
    }
    for (std::size_t real = 0; real < std::min(table_.realIndexes.size(), kIndexLimit); ++real) {
        guard([&] { CheckIndex(real, rows); });
    }
    log_.Count("tables");
    log_.Count("rows", rows.Size());
}

/// Takes the pages of the two maps; gives those whose rows can be read, ascending.
std::vector<PageNumber> TableCheck::CheckPages() {
    const std::vector<PageNumber> owned = context_.maps.Read(table_.ownedMap, where_ + " 소유 지도");
    const std::vector<PageNumber> free = context_.maps.Read(table_.freeMap, where_ + " 여유 지도");
    const PageOwners::OwnerId owner = context_.owners.Register(where_);
    std::vector<PageNumber> sound;
    for (const PageNumber number : owned) {
        context_.owners.Claim(number, owner);
        Guard(log_, FindingKind::Unreadable, PagePlace(number), [&] {
            if (CheckDataPage(log_, context_.pager.Read(number), number, table_.page)) {
                sound.push_back(number);
            }
        });
    }
    CheckFreeSpace(owned, free);
    for (const PageNumber number : sound) {
        if (DataPageView(context_.pager.Read(number)).SlotCount() == 0 &&
            !std::binary_search(free.begin(), free.end(), number)) {
            log_.Add(FindingKind::EmptyPageNotFree, where_, {Number(number)});
        }
    }
    return sound;
}

void TableCheck::CheckFreeSpace(const std::vector<PageNumber>& owned, const std::vector<PageNumber>& free) {
    std::vector<PageNumber> strange;
    std::set_difference(free.begin(), free.end(), owned.begin(), owned.end(), std::back_inserter(strange));
    if (!strange.empty()) {
        log_.Add(FindingKind::FreeSpaceNotOwned, where_, {Number(strange.front())});
    }
}

void TableCheck::ReadLongMaps() {
    std::set<std::uint16_t> columns;
    longValues_.reserve(table_.columns.size());
    for (const LongValueMaps& maps : table_.trailer) {
        const std::size_t place = table_.FindColumn(maps.column);
        if (place == TableDefinition::npos || !columns.insert(maps.column).second ||
            !IsLong(table_.columns[place].type)) {
            log_.Add(FindingKind::LongMapsColumn, where_, {Number(maps.column)});
            continue;
        }
        longValues_.emplace_back(context_, name_, table_, place).ReadMaps(maps);
    }
}

RowList TableCheck::CheckRows(const std::vector<PageNumber>& pages) {
    if (table_.columns.size() > kMaxColumns) {
        log_.Add(FindingKind::ColumnLimit, where_, {Number(table_.columns.size())});
        return {};
    }
    RowCheck check(log_, where_, table_, shape_, longValues_);
    RowScan scan(context_.pager, log_, where_, pages);
    RowList rows = scan.Run([&](RowPointer slot, ByteView row) { return check.Check(slot, row); });
    check.Finish();
    return rows;
}

void TableCheck::CheckIndex(std::size_t real, const RowList& rows) {
    const RealIndex& index = table_.realIndexes[real];
    const std::string where = IndexPlace(name_, IndexName(table_, real));
    IndexEntries entries(context_, where, table_, index, shape_, rows);
    std::uint64_t count = 0;
    const bool whole = IndexTree(context_, where, table_.page, index).Walk([&](ByteView entry) {
        ++count;
        entries.Add(entry);
    });
    entries.Finish();
    if (whole) {
        entries.CheckRowsWithoutEntry();
    }
    entries.ReportCounts();
    log_.Count("indexes");
    log_.Count("index-entries", count);
}

}  // namespace tavrel::jet::check
