#include "jet/compact/TableSalvage.h"

#include <algorithm>

#include "jet/storage/DataPage.h"
#include "jet/storage/TextCoding.h"
#include "jet/storage/UsageMap.h"
#include "jet/table/LongValueWriter.h"

namespace tavrel::jet::compact {

namespace {

/// Rows that were not there have places behind the old file's pages.
RowPointer PlaceOfAdded(PageNumber pages, std::size_t index) {
    return {pages + static_cast<PageNumber>(index / kMaxSlots), static_cast<std::uint8_t>(index % kMaxSlots)};
}

}  // namespace

TableSalvage::TableSalvage(SourcePages& source, const SourceSurvey& survey, const TableDefinition& table,
                           const std::string& name, LossLog& losses, SalvageRules rules)
    : source_(source),
      survey_(survey),
      table_(table),
      losses_(losses),
      rules_(std::move(rules)),
      salvage_(source, table, name, survey.PagesOf(table, name, losses), losses) {
    for (const RealIndex& index : table_.realIndexes) {
        indexes_.push_back(
            {.maker = KeyMaker(table_, index.columns), .entries = {}, .withNull = {}, .oldKeys = {}});
    }
}

std::optional<StoredFields> TableSalvage::Fields(RowPointer at, bool tell) {
    if (at.page >= source_.Count()) {
        return rules_.added[(at.page - source_.Count()) * kMaxSlots + at.row];
    }
    std::optional<StoredFields> fields = salvage_.Read(at, tell);
    if (fields && tell) {
        ++counts_.readable;
    }
    if (fields && rules_.keep && !rules_.keep(*fields, tell)) {
        counts_.leftOut += tell ? 1 : 0;
        return std::nullopt;
    }
    return fields;
}

void TableSalvage::Collect() {
    std::vector<RowPointer> rows = salvage_.Rows();
    for (std::size_t i = 0; i < rules_.added.size(); ++i) {
        rows.push_back(PlaceOfAdded(source_.Count(), i));
    }
    for (const RowPointer at : rows) {
        const std::optional<StoredFields> fields = Fields(at, true);
        if (fields && AddKeys(at, *fields)) {
            accepted_.push_back(at);
        }
    }
    DropDuplicates();
}

/// False when the row cannot be in the table: a key that may not be null is.
bool TableSalvage::AddKeys(RowPointer at, const StoredFields& fields) {
    std::vector<RowKey> keys(indexes_.size());
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        MakeKey(i, at, fields, keys[i]);
        if (keys[i].hasNull && table_.realIndexes[i].Required()) {
            losses_.Add(salvage_.Place(at), "필수 인덱스의 값을 읽을 수 없음");
            ++counts_.leftOut;
            return false;
        }
    }
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        if (!(keys[i].allNull && table_.realIndexes[i].IgnoreNulls())) {
            indexes_[i].entries.Add(keys[i].bytes, at, keys[i].hasNull);
            if (keys[i].hasNull) {
                indexes_[i].withNull.insert(at);
            }
        }
    }
    return true;
}

/// The key from the values; where a character's weight is not known, or the key is very long, the one that
/// the old index has.
void TableSalvage::MakeKey(std::size_t index, RowPointer at, const StoredFields& fields, RowKey& key) {
    Index& entries = indexes_[index];
    try {
        entries.maker.Make(fields, key);
        return;
    } catch (const Error& error) {
        if (error.Number() != errors::kUnknownSortWeight && error.Number() != errors::kRecordTooLarge) {
            throw;
        }
        if (!entries.haveOldKeys) {
            entries.haveOldKeys = true;
            ReadOldKeys(index);
        }
        const auto old = entries.oldKeys.find(at.ToU32());
        if (old == entries.oldKeys.end()) {
            throw UnknownKey(error, index);
        }
        key.bytes = old->second;
        key.hasNull = false;
        key.allNull = false;
    }
}

void TableSalvage::ReadOldKeys(std::size_t index) {
    try {
        const auto pages = ReadUsageMap(source_.Cache(), table_.realIndexes[index].map).pages;
        for (SourceSurvey::Entry& entry : survey_.EntriesOn(pages, table_.page)) {
            indexes_[index].oldKeys[entry.row.ToU32()] = std::move(entry.key);
        }
    } catch (const Error& error) {
        RequireDamage(error);
        // No map, no keys.
    }
}

/// Of rows with one key in a unique index the first stays.
void TableSalvage::DropDuplicates() {
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        EntryArena& entries = indexes_[i].entries;
        entries.Sort();
        if (!table_.realIndexes[i].Unique() || !entries.FirstDuplicate()) {
            continue;
        }
        std::size_t first = 0;
        for (std::size_t entry = 1; entry < entries.Size(); ++entry) {
            const bool same = std::ranges::equal(entries.Key(first), entries.Key(entry));
            if (same && !indexes_[i].withNull.contains(entries.Row(entry)) &&
                !dropped_.contains(entries.Row(first))) {
                if (dropped_.insert(entries.Row(entry)).second) {
                    losses_.Add(salvage_.Place(entries.Row(entry)), "고유 인덱스에 같은 키의 행이 이미 있음");
                    ++counts_.leftOut;
                }
            } else {
                first = entry;
            }
        }
    }
    std::erase_if(accepted_, [&](RowPointer at) { return dropped_.contains(at); });
}

/// That of the primary key; without one, as stored.
std::vector<RowPointer> TableSalvage::Order() {
    const auto primary = std::ranges::find(table_.logicalIndexes, LogicalKind::Primary, &LogicalIndex::kind);
    if (primary == table_.logicalIndexes.end() || table_.realIndexes[primary->real].IgnoreNulls()) {
        return accepted_;
    }
    std::vector<RowPointer> order;
    const EntryArena& entries = indexes_[primary->real].entries;
    for (std::size_t i = 0; i < entries.Size(); ++i) {
        if (!dropped_.contains(entries.Row(i))) {
            order.push_back(entries.Row(i));
        }
    }
    return order;
}

SalvagedRows TableSalvage::Write(TableOutput& out, const PackedTable& packed, std::uint32_t& nextMark) {
    for (const RowPointer at : Order()) {
        WriteRow(at, out, packed, nextMark);
    }
    out.FinishRows();
    for (std::size_t index = 0; index < indexes_.size(); ++index) {
        WriteIndex(index, out);
    }
    return counts_;
}

void TableSalvage::WriteRow(RowPointer at, TableOutput& out, const PackedTable& packed,
                            std::uint32_t& nextMark) {
    std::optional<StoredFields> fields = Fields(at, false);
    if (!fields) {
        ThrowDamaged("행 " + salvage_.Place(at) + "을(를) 다시 읽을 수 없음");
    }
    for (std::size_t place = 0; place < table_.columns.size(); ++place) {
        std::optional<ByteVector>& field = (*fields)[place];
        if (field && IsLong(table_.columns[place].type)) {
            field = StoreLong(table_.columns[place], std::move(*field), out.LongValues(place), nextMark);
        }
    }
    places_[at.ToU32()] = out.Append(BuildRow(packed.Definition().Shape(), *fields));
}

ByteVector TableSalvage::StoreLong(const Column& column, ByteVector value, LongValuesOutput& out,
                                   std::uint32_t& nextMark) const {
    const PreparedLongValue prepared = column.type == ColumnType::Memo
                                           ? PrepareMemo(DecodeUnits(value), column.Compressed())
                                           : PrepareOle(std::move(value));
    if (prepared.kind == kLongInline) {
        return prepared.Descriptor();
    }
    if (prepared.kind == kLongOneRow) {
        return prepared.Descriptor(out.AppendRow(prepared.bytes));
    }
    const std::uint32_t mark = nextMark++;
    const RowPointer begin = out.BeginChain(mark);
    for (ByteView rest = prepared.bytes; !rest.empty();) {
        const ByteView part = rest.first(std::min(rest.size(), kLongPartBytes));
        rest = rest.subspan(part.size());
        out.AppendPart(part, rest.empty());
    }
    return prepared.Descriptor(begin, mark);
}

void TableSalvage::WriteIndex(std::size_t index, TableOutput& out) {
    EntryArena& old = indexes_[index].entries;
    EntryArena entries;
    for (std::size_t i = 0; i < old.Size(); ++i) {
        const auto place = places_.find(old.Row(i).ToU32());
        if (place != places_.end()) {
            entries.Add(old.Key(i), place->second, false);
        }
    }
    old = EntryArena();
    entries.Sort();
    IndexOutput written = out.BeginIndex();
    for (std::size_t i = 0; i < entries.Size(); ++i) {
        written.Add(entries.Entry(i));
    }
    out.EndIndex(index, written);
}

}  // namespace tavrel::jet::compact
