#include "jet/catalog/Catalog.h"

#include "jet/catalog/RowCursor.h"
#include "jet/storage/LongValue.h"
#include "text/Case.h"

namespace tavrel::jet {

namespace {

/// Places of the columns that are read from an engine table, by name.
std::size_t PlaceOf(const TableDefinition& table, std::string_view name) {
    const std::size_t place = table.FindColumnByName(name);
    if (place == TableDefinition::npos) {
        ThrowDamaged("시스템 테이블에 열 " + std::string(name) + "이(가) 없음");
    }
    return place;
}

std::int32_t LongOf(const Value& value) {
    const auto* number = std::get_if<std::int64_t>(&value);
    return number != nullptr ? static_cast<std::int32_t>(*number) : 0;
}

std::string TextOf(Value value) {
    auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? std::move(*text) : std::string();
}

ByteVector BytesOf(Value value) {
    auto* bytes = std::get_if<ByteVector>(&value);
    return bytes != nullptr ? std::move(*bytes) : ByteVector();
}

}  // namespace

const TableDefinition& Catalog::Definition(PageNumber page) {
    std::unique_ptr<TableDefinition>& entry = definitions_[page];
    if (!entry) {
        entry = std::make_unique<TableDefinition>(ReadTableDefinition(pager_, page));
    }
    return *entry;
}

const std::vector<CatalogObject>& Catalog::Objects() {
    if (haveObjects_) {
        return objects_;
    }
    const TableDefinition& table = Definition(kObjectsPage);
    const std::size_t id = PlaceOf(table, "Id");
    const std::size_t parent = PlaceOf(table, "ParentId");
    const std::size_t name = PlaceOf(table, "Name");
    const std::size_t type = PlaceOf(table, "Type");
    const std::size_t flags = PlaceOf(table, "Flags");
    const std::size_t owner = PlaceOf(table, "Owner");
    const std::size_t properties = PlaceOf(table, "LvProp");
    std::vector<CatalogObject> objects;
    for (RowCursor cursor(pager_, table, ownerKey_); cursor.Next();) {
        CatalogObject& object = objects.emplace_back();
        object.id = LongOf(cursor.Get(id));
        object.parentId = LongOf(cursor.Get(parent));
        object.name = TextOf(cursor.Get(name));
        object.type = static_cast<std::int16_t>(LongOf(cursor.Get(type)));
        object.flags = static_cast<std::uint32_t>(LongOf(cursor.Get(flags)));
        object.owner = BytesOf(cursor.Get(owner));
        const std::optional<ByteView> descriptor = cursor.Raw(properties);
        if (descriptor) {
            object.properties.assign(descriptor->begin(), descriptor->end());
        }
        object.at = cursor.At();
    }
    objects_ = std::move(objects);
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (objects_[i].IsTable()) {
            tablesByName_.try_emplace(text::Upper(objects_[i].name), i);
        }
    }
    haveObjects_ = true;
    return objects_;
}

const CatalogObject* Catalog::FindTable(std::string_view name) {
    Objects();
    const auto found = tablesByName_.find(text::Upper(name));
    return found == tablesByName_.end() ? nullptr : &objects_[found->second];
}

PropertyBlob Catalog::Properties(const CatalogObject& object) {
    if (object.properties.empty()) {
        return {};
    }
    return PropertyBlob::Parse(ReadLongValue(pager_, object.properties));
}

std::vector<RelationRow> Catalog::RelationRows() {
    const TableDefinition& table = Definition(kRelationshipsPage);
    const std::size_t name = PlaceOf(table, "szRelationship");
    const std::size_t grbit = PlaceOf(table, "grbit");
    const std::size_t count = PlaceOf(table, "ccolumn");
    const std::size_t column = PlaceOf(table, "icolumn");
    const std::size_t child = PlaceOf(table, "szObject");
    const std::size_t childColumn = PlaceOf(table, "szColumn");
    const std::size_t parent = PlaceOf(table, "szReferencedObject");
    const std::size_t parentColumn = PlaceOf(table, "szReferencedColumn");
    std::vector<RelationRow> rows;
    for (RowCursor cursor(pager_, table, ownerKey_); cursor.Next();) {
        RelationRow& row = rows.emplace_back();
        row.name = TextOf(cursor.Get(name));
        row.grbit = static_cast<std::uint32_t>(LongOf(cursor.Get(grbit)));
        row.columnCount = LongOf(cursor.Get(count));
        row.column = LongOf(cursor.Get(column));
        row.childTable = TextOf(cursor.Get(child));
        row.childColumn = TextOf(cursor.Get(childColumn));
        row.parentTable = TextOf(cursor.Get(parent));
        row.parentColumn = TextOf(cursor.Get(parentColumn));
    }
    return rows;
}

void Catalog::Forget() {
    ++edition_;
    haveObjects_ = false;
    objects_.clear();
    tablesByName_.clear();
    definitions_.clear();
}

}  // namespace tavrel::jet
