#include "jet/define/Writer.h"

#include <algorithm>

#include "jet/catalog/NewDefinitionPages.h"
#include "jet/define/CreateClock.h"
#include "jet/define/CreateDefinition.h"
#include "jet/define/CreateNames.h"
#include "jet/define/CreateRelation.h"
#include "jet/define/EngineObjects.h"
#include "jet/index/IndexBuilder.h"
#include "jet/index/KeyEncoder.h"
#include "jet/storage/UsageMap.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::uint32_t kTableMask = 0xFFEFF;

/// An empty tree of one leaf.
void GiveTree(WriteContext& context, PageNumber table, RealIndex& index, PageNumber& mapPage) {
    index.map = context.allocator.NewMap(mapPage);
    index.root = context.allocator.Allocate();
    context.allocator.Add(index.map, index.root);
    EntryArena none;
    BuildIndex(context.pager, context.allocator, table, index.map, index.root, none);
}

}  // namespace

Writer::Writer(TableEdits& edits, Catalog& catalog, const FileHeader& header, std::optional<double> clock)
    : edits_(edits), catalog_(catalog), system_(edits), sortOrder_(header.sortOrder), clock_(clock) {
    ReadObjects();
}

// ---- names

/// Two names are one when their keys are equal: that is what the unique index over (ParentId, Name) goes by.
/// Names that have no key, which other engines may have made, go by their upper-case letters.
std::string Writer::PlaceKey(std::int32_t parentId, std::string_view name) const {
    std::string key = std::to_string(parentId) + ':';
    if (const auto bytes = EncodeTextKey(text::Utf16FromUtf8(name), sortOrder_)) {
        return key.append(bytes->begin(), bytes->end());
    }
    return key.append(text::Upper(name));
}

void Writer::ReadObjects() {
    for (const CatalogObject& object : catalog_.Objects()) {
        objects_.try_emplace(PlaceKey(object.parentId, object.name),
                             ObjectPlace{object.id, object.type, object.name, object.at});
        nextObjectId_ = std::max(nextObjectId_, object.id < 0 ? object.id + 1 : nextObjectId_);
    }
}

void Writer::Register(const NewObject& object, RowPointer at) {
    objects_[PlaceKey(object.parentId, object.name)] = {object.id, static_cast<std::int16_t>(object.type),
                                                        object.name, at};
    nextObjectId_ = std::max(nextObjectId_, object.id < 0 ? object.id + 1 : nextObjectId_);
}

const Writer::ObjectPlace* Writer::Find(std::int32_t parentId, std::string_view name) const {
    const auto found = objects_.find(PlaceKey(parentId, name));
    return found == objects_.end() ? nullptr : &found->second;
}

const Writer::ObjectPlace* Writer::FindTable(std::string_view name) const {
    const ObjectPlace* object = Find(kTablesContainer, name);
    return object != nullptr && object->type == static_cast<std::int16_t>(ObjectType::Table) ? object
                                                                                             : nullptr;
}

std::string Writer::TableName(PageNumber page) const {
    for (const auto& [key, object] : objects_) {
        if (object.type == static_cast<std::int16_t>(ObjectType::Table) &&
            static_cast<PageNumber>(object.id) == page) {
            return object.name;
        }
    }
    return {};
}

// ---- objects

void Writer::AddObject(const NewObject& object, std::span<const Permission> permissions) {
    const RowPointer at = system_.Add(object);
    for (const Permission& permission : permissions) {
        system_.Add(permission);
    }
    Register(object, at);
}

void Writer::AddEngineObjects() {
    for (NewObject& object : EngineObjects(Now())) {
        Register(object, system_.Add(object));
    }
    for (const Permission& permission : EnginePermissions()) {
        system_.Add(permission);
    }
    edits_.Save();
    edits_.Forget();
}

void Writer::GivePages(TableDefinition& table) {
    PageAllocator& allocator = Context().allocator;
    table.page = allocator.Allocate();
    PageNumber mapPage = 0;
    table.ownedMap = allocator.NewMap(mapPage);
    table.freeMap = allocator.NewMap(mapPage);
    for (Column& column : table.columns) {
        if (IsLong(column.type)) {
            column.ownedMap = allocator.NewMap(mapPage);
            column.freeMap = allocator.NewMap(mapPage);
            column.hasMaps = true;
            table.trailer.push_back({column.number, column.ownedMap, column.freeMap});
        }
    }
    for (RealIndex& index : table.realIndexes) {
        GiveTree(Context(), table.page, index, mapPage);
    }
}

void Writer::CreateTable(const NewTable& wanted) {
    TableDefinition table = NewTableDefinition(wanted, sortOrder_);
    NameKey(wanted.name, sortOrder_);
    if (Find(kTablesContainer, wanted.name) != nullptr) {
        throw MakeError(errors::kTableExists, {wanted.name});
    }
    const PropertyBlob properties = NewTableProperties(wanted);
    Atomically([&] {
        GivePages(table);
        StoreDefinition(Context().pager, Context().allocator, table);
        const auto id = static_cast<std::int32_t>(table.page);
        NewObject object{id, kTablesContainer, wanted.name, ObjectType::Table,
                         0,  accounts::kAdmin, Now(),       {}};
        if (!properties.Empty()) {
            object.properties = properties.Build();
        }
        const Permission permissions[] = {{id, &accounts::kAdmin, kTableMask, false},
                                          {id, &accounts::kAdmins, kTableMask, false},
                                          {id, &accounts::kUsers, kTableMask, false}};
        AddObject(object, permissions);
    });
}

void Writer::CreateRelation(const RelationInfo& relation) {
    RelationMaker(*this, relation).Make();
}

PropertyBlob Writer::PropertiesOf(const ObjectPlace& object) {
    const TableDefinition& objects = catalog_.Definition(kObjectsPage);
    const RowShape shape = objects.Shape();
    const ByteVector row = ReadRowAt(Context().pager, object.at);
    const std::size_t place = objects.FindColumnByName("LvProp");
    const auto descriptor =
        place != TableDefinition::npos ? RowView(shape, row).Field(place) : std::optional<ByteView>();
    return descriptor ? PropertyBlob::Parse(ReadLongValue(Context().pager, *descriptor)) : PropertyBlob();
}

std::unique_ptr<TableWriter> Writer::Append(const std::string& table) {
    const ObjectPlace* object = FindTable(table);
    if (object == nullptr) {
        throw MakeError(errors::kNoSuchTable, {table});
    }
    const auto page = static_cast<PageNumber>(object->id);
    if (!open_.insert(page).second) {
        throw MakeError(definitionErrors::kTableInUse, {table});
    }
    try {
        auto rows = std::make_unique<RowWriter>(
            Context(), object->name, ReadTableDefinition(Context().pager, page), PropertiesOf(*object));
        return std::make_unique<TableWriter>(*this, std::move(rows));
    } catch (...) {
        open_.erase(page);
        throw;
    }
}

void Writer::Release(PageNumber table) {
    open_.erase(table);
    catalog_.Forget();
}

void Writer::Flush() {
    if (Context().broken) {
        ThrowDamaged("앞선 쓰기가 도중에 실패함");
    }
    if (!open_.empty()) {
        throw MakeError(definitionErrors::kTableInUse, {TableName(*open_.begin())});
    }
    edits_.Save();
    Context().pager.Flush();
}

/// Does all of it or nothing.
void Writer::Atomically(const std::function<void()>& work) {
    Pager& pager = Context().pager;
    const bool outermost = !pager.InStatement();
    const auto objectsBefore = nextObjectId_;
    if (outermost) {
        pager.BeginStatement();
    }
    try {
        work();
        edits_.Save();
    } catch (...) {
        if (outermost) {
            pager.RollbackStatement();
        }
        edits_.Forget();
        nextObjectId_ = objectsBefore;
        throw;
    }
    if (outermost) {
        pager.CommitStatement();
    }
    edits_.Forget();
}

double Writer::Now() const {
    return clock_ ? *clock_ : LocalNow();
}

}  // namespace tavrel::jet
