#include "jet/table/EditedTable.h"

#include <algorithm>
#include <random>

#include "jet/catalog/Catalog.h"
#include "jet/index/IndexReader.h"
#include "jet/index/KeyEncoder.h"
#include "jet/storage/LongValue.h"
#include "jet/storage/RowPatch.h"
#include "jet/table/RowEncoder.h"

namespace tavrel::jet {

EditedTable::EditedTable(WriteContext& context, std::string name, TableDefinition definition,
                         const PropertyBlob& properties)
    : context_(context),
      name_(std::move(name)),
      definition_(std::move(definition)),
      shape_(definition_.Shape()),
      builder_(name_, definition_, properties, context.ownerKey),
      rows_(context.pager, context.allocator, definition_.page, definition_.ownedMap, definition_.freeMap) {
    for (std::size_t place = 0; place < definition_.columns.size(); ++place) {
        const Column& column = definition_.columns[place];
        if (IsLong(column.type)) {
            longValues_.try_emplace(place, context.pager, context.allocator, column, context.nextMark);
        }
        const Property* drawn = properties.OfColumn(column.name, "DefaultValue");
        randomNumbers_ = randomNumbers_ || (column.Autonumber() && drawn != nullptr &&
                                            drawn->AsText().find("GenUniqueID") != std::string::npos);
    }
    const bool ofEngine = definition_.page >= kObjectsPage && definition_.page <= kRelationshipsPage;
    const UnknownWeights unknown = ofEngine ? UnknownWeights::Refuse : context.unknown;
    for (const RealIndex& index : definition_.realIndexes) {
        Index& made = indexes_.emplace_back(
            Index{KeyMaker(definition_, index.columns, unknown),
                  BTree(context.pager, context.allocator, definition_.page, index.map, index.root),
                  std::vector<bool>(definition_.columns.size()), index.Unique(), index.Required(),
                  index.IgnoreNulls()});
        made.maker.MarkColumns(made.columns);
    }
    keys_.resize(indexes_.size());
}

// ---- putting in

std::size_t EditedTable::PlaceOfAutonumber() const {
    const auto found = std::ranges::find_if(definition_.columns, [](const Column& column) {
        return column.type == ColumnType::Long && column.Autonumber();
    });
    return found == definition_.columns.end() ? TableDefinition::npos
                                              : static_cast<std::size_t>(found - definition_.columns.begin());
}

/// Puts a drawn number where the next one is asked for.
void EditedTable::DrawNumber(std::vector<Value>& values) const {
    static std::mt19937 source{std::random_device{}()};
    const std::size_t place = PlaceOfAutonumber();
    if (place != TableDefinition::npos && IsNull(values[place])) {
        values[place] = std::int64_t{static_cast<std::int32_t>(source())};
    }
}

RowPointer EditedTable::Insert(std::span<const Value> values) {
    if (randomNumbers_) {
        std::vector<Value> drawn(values.begin(), values.end());
        DrawNumber(drawn);
        builder_.Encode(drawn);
    } else {
        builder_.Encode(values);
    }
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        MakeKey(indexes_[i], builder_.Fields(), keys_[i]);
        CheckKey(i, keys_[i], {});
    }
    const std::size_t counter = PlaceOfAutonumber();
    if (counter != TableDefinition::npos && builder_.Fields()[counter]) {
        lastNumber_ = static_cast<std::int32_t>(U32(*builder_.Fields()[counter], 0));
    }
    if (!randomNumbers_) {
        definition_.lastAutonumber = std::max(definition_.lastAutonumber, builder_.AutonumberOfRow());
    }
    builder_.SetAsideLongValues();
    for (const RowBuilder::LongField& field : builder_.LongValues()) {
        builder_.SetDescriptor(field.place, longValues_.at(field.place).Store(field.value));
    }
    const RowPointer at = rows_.Insert(builder_.Build());
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        AddEntry(i, keys_[i], at);
    }
    ++definition_.rowCount;
    countersChanged_ = true;
    return at;
}

void EditedTable::MakeKey(const Index& index, const StoredFields& fields, RowKey& key) const {
    index.maker.Make(fields, key);
    if (index.required && key.hasNull) {
        throw MakeError(errors::kNullInKey);
    }
}

/// `self`: the row that is to have the key.
void EditedTable::CheckKey(std::size_t index, const RowKey& key, RowPointer self) {
    if (!indexes_[index].unique || key.hasNull) {
        return;
    }
    bool taken = false;
    if (key.standIn) {
        taken = std::ranges::any_of(RowsWithKey(index, key), [&](RowPointer row) { return row != self; });
    } else {
        taken = HasKey(index, key);
    }
    if (taken) {
        throw MakeError(errors::kDuplicateKey, {}, name_);
    }
}

void EditedTable::AddEntry(std::size_t index, const RowKey& key, RowPointer at) {
    if (key.allNull && indexes_[index].ignoresNulls) {
        return;
    }
    indexes_[index].tree.Insert(key.bytes, at);
    if (key.standIn) {
        context_.standIns.insert(name_);
    }
    if (indexes_[index].unique) {
        ++definition_.realIndexes[index].distinctKeys;
    }
}

/// Takes out the entry of a row with these fields.  Where its key cannot be made (a character of unknown
/// weight, a great length), or an engine has made another, the entry is found by its row.
void EditedTable::RemoveEntry(std::size_t index, const StoredFields& fields, RowPointer at) {
    Index& edited = indexes_[index];
    RowKey key;
    try {
        edited.maker.Make(fields, key);
    } catch (const Error& error) {
        if (error.Number() != errors::kUnknownSortWeight && error.Number() != errors::kRecordTooLarge) {
            throw;
        }
        key.bytes.clear();
        key.allNull = false;
    }
    if (key.allNull && edited.ignoresNulls) {
        return;
    }
    if ((key.bytes.empty() || !edited.tree.Remove(key.bytes, at)) && !edited.tree.RemoveRow(at)) {
        ThrowDamaged(name_ + "의 인덱스에 행의 항목이 없음");
    }
}

// ---- reading

ByteVector EditedTable::ReadBytes(RowPointer at) {
    {
        const PageRef page = context_.pager.Read(at.page);
        const DataPageView view(page);
        if (view.Owner() != definition_.page || (view.At(at.row).flags & kSlotHidden) != 0) {
            ThrowDamaged(name_ + "에 없는 행 " + std::to_string(at.page) + ":" + std::to_string(at.row));
        }
    }
    return ReadRowAt(context_.pager, at);
}

bool EditedTable::Exists(RowPointer at) {
    const PageRef page = context_.pager.Read(at.page);
    if (page.Bytes()[0] != kPageTypeData) {
        return false;
    }
    const DataPageView view(page);
    return view.Owner() == definition_.page && at.row < view.SlotCount() &&
           (view.At(at.row).flags & kSlotHidden) == 0;
}

std::optional<ByteVector> EditedTable::Fetch(const RowView& row, std::size_t place) {
    const std::optional<ByteView> raw = row.Field(place);
    if (!raw) {
        return std::nullopt;
    }
    if (IsLong(definition_.columns[place].type)) {
        return ReadLongValue(context_.pager, *raw);
    }
    return ByteVector(raw->begin(), raw->end());
}

StoredFields EditedTable::Read(RowPointer at, const std::vector<bool>& wanted) {
    const ByteVector bytes = ReadBytes(at);
    const RowView row(shape_, bytes);
    StoredFields fields(definition_.columns.size());
    for (std::size_t place = 0; place < fields.size(); ++place) {
        if (wanted[place]) {
            fields[place] = Fetch(row, place);
        }
    }
    return fields;
}

bool EditedTable::HasKey(std::size_t realIndex, const RowKey& key) {
    return key.standIn ? !RowsWithKey(realIndex, key).empty()
                       : indexes_.at(realIndex).tree.Contains(key.bytes);
}

std::vector<RowPointer> EditedTable::RowsWithKey(std::size_t realIndex, const RowKey& key) {
    std::vector<RowPointer> rows;
    const RealIndex& index = definition_.realIndexes.at(realIndex);
    if (key.standIn) {
        const KeyMaker maker(definition_, index.columns, UnknownWeights::StandIn);
        std::vector<bool> wanted(definition_.columns.size());
        maker.MarkColumns(wanted);
        RowKey other;
        ScanFields(context_.pager, definition_, wanted, [&](RowPointer row, const StoredFields& fields) {
            maker.Make(fields, other);
            if (other.bytes == key.bytes) {
                rows.push_back(row);
            }
        });
        return rows;
    }
    IndexReader reader(context_.pager, index.root, definition_.page);
    for (bool more = reader.Seek(key.bytes); more && std::ranges::equal(reader.Key(), key.bytes);
         more = reader.Next()) {
        rows.push_back(reader.Row());
    }
    return rows;
}

// ---- changing

FieldChange EditedTable::Encode(std::size_t place, const Value& value) const {
    const Column& column = definition_.columns[place];
    FieldChange change{place, std::nullopt, std::nullopt};
    if (IsNull(value)) {
        if (column.type == ColumnType::Boolean) {
            change.bytes = ByteVector{0};
        }
    } else if (column.type == ColumnType::Memo) {
        change.longValue = PrepareMemo(TextOf(value), column.Compressed());
        change.bytes = change.longValue->bytes;
    } else if (column.type == ColumnType::Ole) {
        change.longValue = PrepareOle(BytesOf(value));
        change.bytes = change.longValue->bytes;
    } else {
        change.bytes = EncodeField(column, value, context_.ownerKey);
    }
    return change;
}

void EditedTable::Update(RowPointer at, std::span<const FieldChange> changes) {
    const ByteVector bytes = ReadBytes(at);
    const RowView row(shape_, bytes);
    UpdateEntries(at, row, changes);
    if (!PatchFixed(at, bytes, changes)) {
        rows_.Update(at, Rebuild(row, changes));
    }
}

/// The entries of the indexes that a changed column belongs to.
void EditedTable::UpdateEntries(RowPointer at, const RowView& row, std::span<const FieldChange> changes) {
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        Index& index = indexes_[i];
        if (std::ranges::none_of(changes, [&](const FieldChange& c) { return index.columns[c.place]; })) {
            continue;
        }
        StoredFields fields(definition_.columns.size());
        for (std::size_t place = 0; place < fields.size(); ++place) {
            if (index.columns[place]) {
                fields[place] = Fetch(row, place);
            }
        }
        const StoredFields before = fields;
        for (const FieldChange& change : changes) {
            if (index.columns[change.place]) {
                fields[change.place] = change.bytes;
            }
        }
        if (fields == before) {
            continue;  // the entry stays, whatever weights its characters have
        }
        RemoveEntry(i, before, at);
        RowKey key;
        MakeKey(index, fields, key);
        CheckKey(i, key, at);
        AddEntry(i, key, at);
    }
}

/// Writes changes of fixed columns into the row as it lies; false when the row must be built anew.
bool EditedTable::PatchFixed(RowPointer at, const ByteVector& row, std::span<const FieldChange> changes) {
    std::vector<FieldBytes> fields;
    for (const FieldChange& change : changes) {
        fields.push_back({change.place, change.bytes ? &*change.bytes : nullptr});
    }
    if (!FitsInPlace(shape_, RowView(shape_, row), fields)) {
        return false;
    }
    ByteVector patched = row;
    PatchInPlace(shape_, patched, fields);
    rows_.Update(at, patched);
    return true;
}

/// The row's bytes with changed fields, brought up to the present number of columns.  Old long values that
/// are replaced are freed.
ByteVector EditedTable::Rebuild(const RowView& row, std::span<const FieldChange> changes) {
    StoredFields fields(definition_.columns.size());
    for (std::size_t place = 0; place < fields.size(); ++place) {
        const std::optional<ByteView> raw = row.Field(place);
        if (raw) {
            fields[place] = ByteVector(raw->begin(), raw->end());
        }
    }
    for (const FieldChange& change : changes) {
        std::optional<ByteVector>& field = fields[change.place];
        const auto store = longValues_.find(change.place);
        if (store != longValues_.end() && field) {
            store->second.Free(*field);
        }
        field = change.longValue ? store->second.Store(*change.longValue) : change.bytes;
    }
    return BuildRow(shape_, fields);
}

// ---- taking out

void EditedTable::Delete(RowPointer at) {
    const ByteVector bytes = ReadBytes(at);
    const RowView row(shape_, bytes);
    StoredFields fields(definition_.columns.size());
    for (std::size_t place = 0; place < fields.size(); ++place) {
        const bool inIndex =
            std::ranges::any_of(indexes_, [&](const Index& i) { return bool{i.columns[place]}; });
        if (inIndex) {
            fields[place] = Fetch(row, place);
        }
    }
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        RemoveEntry(i, fields, at);
    }
    for (auto& [place, store] : longValues_) {
        if (const std::optional<ByteView> descriptor = row.Field(place)) {
            store.Free(*descriptor);
        }
    }
    rows_.Delete(at);
    definition_.rowCount -= definition_.rowCount > 0 ? 1 : 0;
    countersChanged_ = true;
}

// ---- counters

void EditedTable::SaveCounters() {
    constexpr std::size_t kRowCount = 0x10;
    constexpr std::size_t kLastAutonumber = 0x14;
    constexpr std::size_t kStatistics = 0x3F;
    constexpr std::size_t kStatisticsBytes = 12;
    if (!countersChanged_) {
        return;
    }
    Page& page = context_.pager.Write(definition_.page);
    PutU32(page, kRowCount, definition_.rowCount);
    PutU32(page, kLastAutonumber, definition_.lastAutonumber);
    for (std::size_t i = 0; i < definition_.realIndexes.size(); ++i) {
        PutU32(page, kStatistics + kStatisticsBytes * i + 4, definition_.realIndexes[i].distinctKeys);
    }
    countersChanged_ = false;
}

}  // namespace tavrel::jet
