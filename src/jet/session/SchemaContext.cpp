#include "jet/session/SchemaContext.h"

#include <algorithm>

#include "jet/catalog/NewDefinitionPages.h"
#include "jet/catalog/RowCursor.h"
#include "jet/define/CreateClock.h"
#include "jet/define/CreateDefinition.h"
#include "jet/index/IndexBuilder.h"
#include "jet/table/RowKeys.h"

namespace tavrel::jet {

ChangedTable SchemaContext::Load(const std::string& name, std::int32_t missing) {
    edits_.Save();
    edits_.Forget();
    const CatalogObject* object = database_.Catalog().FindTable(name);
    if (object == nullptr || object->IsSystem()) {
        throw MakeError(missing, {name});
    }
    return {*object, ReadTableDefinition(Pages(), object->DefinitionPage()),
            database_.Catalog().Properties(*object)};
}

void SchemaContext::Store(ChangedTable& table) {
    SortLogicalIndexes(table.definition, SortOrder());
    StoreDefinition(Pages(), Allocator(), table.definition);
    edits_.Forget();
}

void SchemaContext::StoreProperties(const ChangedTable& table) {
    EditedTable& objects = edits_.Edit(kObjectsPage);
    const auto placeOf = [&](std::string_view name) { return objects.Definition().FindColumnByName(name); };
    const Value blob = table.properties.Empty() ? Value{Null{}} : Value{table.properties.Build()};
    const FieldChange changes[] = {objects.Encode(placeOf("LvProp"), blob),
                                   objects.Encode(placeOf("DateUpdate"), Date{LocalNow()})};
    objects.Update(table.object.at, changes);
    edits_.Save();
    edits_.Forget();
}

RowPointer SchemaContext::NewMap(const TableDefinition& table) {
    PageNumber mapPage = table.ownedMap.page;
    // The maps of the engine's tables in old files share their page with nothing else.
    return Allocator().NewMap(mapPage);
}

void SchemaContext::FreeMapped(RowPointer map) {
    for (const PageNumber page : ReadUsageMap(Pages(), map).pages) {
        Allocator().Free(page);
    }
    DropMap(map);
}

void SchemaContext::DropMap(RowPointer map) {
    if (map.page == 0) {
        return;
    }
    for (const PageNumber page : ReadUsageMap(Pages(), map).bitmapPages) {
        Allocator().Free(page);
    }
    DataPageEditor editor(Pages().Write(map.page));
    editor.Delete(map.row);
    if (editor.LiveRows() == 0) {
        Allocator().Free(map.page);
    }
}

void SchemaContext::BuildTree(const ChangedTable& table, RealIndex& index) {
    const KeyMaker maker(table.definition, index.columns, edits_.Context().unknown);
    std::vector<bool> wanted(table.definition.columns.size());
    maker.MarkColumns(wanted);
    EntryArena entries;
    RowKey key;
    bool standIn = false;
    ScanFields(Pages(), table.definition, wanted, [&](RowPointer row, const StoredFields& fields) {
        maker.Make(fields, key);
        if (key.hasNull && index.Required()) {
            throw MakeError(errors::kNullInKey);
        }
        if (!(key.allNull && index.IgnoreNulls())) {
            entries.Add(key.bytes, row, key.hasNull);
            standIn = standIn || key.standIn;
        }
    });
    if (standIn) {
        edits_.Context().standIns.insert(table.object.name);
    }
    entries.Sort();
    if (index.Unique() && entries.FirstDuplicate()) {
        throw MakeError(errors::kDuplicateKey, {}, table.object.name);
    }
    for (const PageNumber page : ReadUsageMap(Pages(), index.map).pages) {
        if (page != index.root) {
            Allocator().Remove(index.map, page);
            Allocator().Free(page);
        }
    }
    index.distinctKeys =
        BuildIndex(Pages(), Allocator(), table.definition.page, index.map, index.root, entries).distinctKeys;
}

void SchemaContext::GiveTree(const ChangedTable& table, RealIndex& index) {
    index.map = NewMap(table.definition);
    index.root = Allocator().Allocate();
    Allocator().Add(index.map, index.root);
    BuildTree(table, index);
}

void SchemaContext::DropObject(const CatalogObject& object) {
    EditedTable& aces = edits_.Edit(kAcesPage);
    const std::size_t id = aces.Definition().FindColumnByName("ObjectId");
    std::vector<RowPointer> rows;
    for (RowCursor cursor(Pages(), aces.Definition(), database_.Header().ownerKey); cursor.Next();) {
        if (cursor.Get(id) == Value{std::int64_t{object.id}}) {
            rows.push_back(cursor.At());
        }
    }
    for (const RowPointer row : rows) {
        aces.Delete(row);
    }
    edits_.Edit(kObjectsPage).Delete(object.at);
    edits_.Save();
    edits_.Forget();
}

void RemoveLogicalIndex(SchemaContext& context, TableDefinition& table, std::size_t which) {
    const std::uint32_t real = table.logicalIndexes[which].real;
    table.logicalIndexes.erase(table.logicalIndexes.begin() + static_cast<std::ptrdiff_t>(which));
    if (std::ranges::any_of(table.logicalIndexes,
                            [&](const LogicalIndex& index) { return index.real == real; })) {
        return;
    }
    context.FreeMapped(table.realIndexes.at(real).map);
    table.realIndexes.erase(table.realIndexes.begin() + static_cast<std::ptrdiff_t>(real));
    for (LogicalIndex& index : table.logicalIndexes) {
        index.real -= index.real > real ? 1 : 0;
    }
}

bool IsInRelation(const TableDefinition& table, std::uint16_t column) {
    return std::ranges::any_of(table.logicalIndexes, [&](const LogicalIndex& index) {
        return index.side != RelationSide::None && index.real < table.realIndexes.size() &&
               std::ranges::find(table.realIndexes[index.real].columns, column, &IndexColumn::number) !=
                   table.realIndexes[index.real].columns.end();
    });
}

}  // namespace tavrel::jet
