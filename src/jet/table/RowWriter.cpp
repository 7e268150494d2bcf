#include "jet/table/RowWriter.h"

#include <algorithm>

#include "jet/catalog/NewDefinitionPages.h"
#include "jet/index/IndexBuilder.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet {

RowWriter::RowWriter(WriteContext& context, std::string tableName, TableDefinition table,
                     const PropertyBlob& properties)
    : context_(context),
      tableName_(std::move(tableName)),
      table_(std::move(table)),
      builder_(tableName_, table_, properties, context.ownerKey),
      rows_(context.pager, context.allocator, table_.page, table_.ownedMap, table_.freeMap),
      savedAutonumber_(table_.lastAutonumber) {
    for (std::size_t place = 0; place < table_.columns.size(); ++place) {
        if (IsLong(table_.columns[place].type)) {
            longValues_.try_emplace(place, context.pager, context.allocator, table_.columns[place],
                                    context.nextMark);
        }
    }
    for (const RealIndex& index : table_.realIndexes) {
        indexes_.push_back({KeyMaker(table_, index.columns), {}, {}});
    }
}

/// The indexes are built from scratch, so that the rows that are there already must give their entries too.
void RowWriter::CollectExisting() {
    std::vector<bool> wanted(table_.columns.size());
    for (IndexEntries& index : indexes_) {
        index.maker.MarkColumns(wanted);
        index.entries = EntryArena();
    }
    table_.rowCount =
        ScanFields(context_.pager, table_, wanted, [this](RowPointer row, const StoredFields& fields) {
            for (IndexEntries& index : indexes_) {
                index.maker.Make(fields, index.key);
            }
            AddEntries(row);
        });
    collected_ = true;
}

RowPointer RowWriter::Append(std::span<const Value> values) {
    if (!collected_) {
        CollectExisting();
    }
    builder_.Encode(values);
    const std::uint32_t autonumber = builder_.AutonumberOfRow();
    MakeKeys();
    builder_.SetAsideLongValues();
    ByteVector row = builder_.Build();  // throws when the row is too long, before anything is stored
    RowPointer at;
    try {
        at = Store(std::move(row));
    } catch (...) {
        context_.broken = true;
        throw;
    }
    AddEntries(at);
    ++table_.rowCount;
    table_.lastAutonumber = std::max(table_.lastAutonumber, autonumber);
    return at;
}

void RowWriter::MakeKeys() {
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        indexes_[i].maker.Make(builder_.Fields(), indexes_[i].key);
        if (indexes_[i].key.hasNull && table_.realIndexes[i].Required()) {
            throw MakeError(errors::kNullInKey);
        }
    }
}

/// `row` is right unless it has long values outside; these get their places first.
RowPointer RowWriter::Store(ByteVector row) {
    bool outside = false;
    for (const RowBuilder::LongField& field : builder_.LongValues()) {
        if (field.value.kind != kLongInline) {
            builder_.SetDescriptor(field.place, longValues_.at(field.place).Store(field.value));
            outside = true;
        }
    }
    return rows_.Append(outside ? builder_.Build() : row);
}

void RowWriter::AddEntries(RowPointer row) {
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        const RowKey& key = indexes_[i].key;
        if (!(key.allNull && table_.realIndexes[i].IgnoreNulls())) {
            indexes_[i].entries.Add(key.bytes, row, key.hasNull);
        }
    }
}

void RowWriter::CheckUnique() {
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        if (!table_.realIndexes[i].Unique()) {
            continue;
        }
        indexes_[i].entries.Sort();
        if (indexes_[i].entries.FirstDuplicate()) {
            throw MakeError(errors::kDuplicateKey, {}, tableName_);
        }
    }
}

void RowWriter::Save() {
    if (!collected_) {
        CollectExisting();
    }
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        RealIndex& index = table_.realIndexes[i];
        FreeOldPages(index);
        const BuiltIndex built = BuildIndex(context_.pager, context_.allocator, table_.page, index.map,
                                            index.root, indexes_[i].entries);
        index.entriesWhenBuilt = 0;
        index.distinctKeys = built.distinctKeys;
    }
    StoreDefinition(context_.pager, context_.allocator, table_);
    rows_.Keep();
    for (auto& [place, writer] : longValues_) {
        writer.Keep();
    }
    savedAutonumber_ = table_.lastAutonumber;
}

/// All pages of a tree but its root.
void RowWriter::FreeOldPages(const RealIndex& index) {
    for (const PageNumber page : ReadUsageMap(context_.pager, index.map).pages) {
        if (page != index.root) {
            context_.allocator.Remove(index.map, page);
            context_.allocator.Free(page);
        }
    }
}

void RowWriter::Undo() {
    rows_.Undo();
    for (auto& [place, writer] : longValues_) {
        writer.Undo();
    }
    table_.lastAutonumber = savedAutonumber_;
    collected_ = false;  // the entries of the rows taken back are in indexes_
}

}  // namespace tavrel::jet
