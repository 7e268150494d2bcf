#include "jet/check/TableCheck.h"

#include <algorithm>
#include <set>

#include "jet/check/DataPageCheck.h"
#include "jet/check/DefinitionCheck.h"
#include "jet/check/IndexDefinitionCheck.h"
#include "jet/check/IndexEntries.h"
#include "jet/check/IndexTree.h"
#include "jet/check/Places.h"
#include "jet/check/RowCheck.h"
#include "jet/check/RowScan.h"

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
    guard([&] { CheckPages(); });
    guard([&] { ReadLongMaps(); });
    RowList rows(slots_);
    guard([&] { rows = CheckRows(); });
    if (rows.Size() != table_.rowCount) {
        log_.Add(FindingKind::RowCount, where_, {Number(table_.rowCount), Number(rows.Size())});
    }
    for (LongValueCheck& longValue : longValues_) {
        guard([&] { longValue.CheckUse(); });
    }
    CheckIndexes(rows);
    log_.Count("tables");
    log_.Count("rows", rows.Size());
}

/// Takes the pages of the two maps.
void TableCheck::CheckPages() {
    const std::vector<PageNumber> owned = context_.maps.Read(table_.ownedMap, where_ + " 소유 지도");
    const std::vector<PageNumber> free = context_.maps.Read(table_.freeMap, where_ + " 여유 지도");
    const PageOwners::OwnerId owner = context_.owners.Register(where_);
    SlotNumbers sound;
    std::vector<PageNumber> empty;
    for (const PageNumber number : owned) {
        context_.owners.Claim(number, owner);
        Guard(log_, FindingKind::Unreadable, PagePlace(number), [&] {
            const PageRef page = context_.pager.Read(number);
            if (CheckDataPage(log_, page, number, table_.page)) {
                const unsigned slots = DataPageView(page).SlotCount();
                sound.AddPage(number, slots);
                if (slots == 0) {
                    empty.push_back(number);
                }
            }
        });
    }
    CheckFreeSpace(owned, free);
    for (const PageNumber number : empty) {
        if (!std::binary_search(free.begin(), free.end(), number)) {
            log_.Add(FindingKind::EmptyPageNotFree, where_, {Number(number)});
        }
    }
    slots_ = std::move(sound);
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

RowList TableCheck::CheckRows() {
    if (table_.columns.size() > kMaxColumns) {
        log_.Add(FindingKind::ColumnLimit, where_, {Number(table_.columns.size())});
        return RowList(slots_);
    }
    std::vector<WantedEntries> wanted;
    for (std::size_t real = 0; real < std::min(table_.realIndexes.size(), kIndexLimit); ++real) {
        wanted.emplace_back(table_, table_.realIndexes[real]);
    }
    RowCheck check(log_, where_, table_, shape_, longValues_);
    RowScan scan(context_.pager, log_, where_, slots_);
    RowList rows = scan.Run([&](RowPointer slot, ByteView row) {
        if (!check.Check(slot, row)) {
            return false;
        }
        const RowView view(shape_, row);
        for (WantedEntries& entries : wanted) {
            entries.Add(slot, view);
        }
        return true;
    });
    check.Finish();
    if (!rows.AnySpoiled()) {
        wanted_ = std::move(wanted);
    }
    return rows;
}

void TableCheck::CheckIndexes(const RowList& rows) {
    if (table_.realIndexes.size() > kIndexLimit) {
        log_.Add(FindingKind::IndexLimit, where_, {Number(table_.realIndexes.size())});
    }
    for (std::size_t real = 0; real < std::min(table_.realIndexes.size(), kIndexLimit); ++real) {
        Guard(log_, FindingKind::Unreadable, where_, [&] { CheckIndex(real, rows); });
    }
}

/// Most indexes are right, which their sums show; the entries of the others are looked at one by one.
void TableCheck::CheckIndex(std::size_t real, const RowList& rows) {
    const RealIndex& index = table_.realIndexes[real];
    const std::string where = IndexPlace(name_, IndexName(table_, real));
    IndexTree tree(context_, where, table_.page, index);
    PresentEntries present(index);
    const bool whole = tree.Walk([&](ByteView entry) { present.Add(entry); });
    const bool right = whole && !wanted_.empty() && wanted_[real].Are(present.Sum());
    if (right && !present.AnyDuplicate()) {
        IndexEntries::ReportCounts(log_, present.Sum().Number(), 0);
    } else {
        IndexEntries entries(context_, where, table_, index, shape_, rows);
        tree.Replay([&](ByteView entry) { entries.Add(entry); });
        entries.Finish();
        if (whole) {
            entries.CheckRowsWithoutEntry();
        }
        entries.ReportCounts();
    }
    log_.Count("indexes");
    log_.Count("index-entries", present.Sum().Number());
}

}  // namespace tavrel::jet::check
