#include "jet/check/CatalogCheck.h"

#include <algorithm>
#include <set>

#include "jet/check/Places.h"
#include "jet/check/SystemTable.h"
#include "text/Case.h"
#include "text/Format.h"

namespace tavrel::jet::check {

namespace {

const std::string kObjectsTable = "MSysObjects";
constexpr std::uint32_t kEngineFlag = 0x80000000;
/// Ids of the engine's own tables and containers end in a number below this.
constexpr std::uint32_t kEngineIds = 16;

struct FixedObject {
    std::int32_t id;
    std::string_view name;
};
constexpr FixedObject kFixedObjects[] = {
    {static_cast<std::int32_t>(kObjectsPage), "MSysObjects"},
    {static_cast<std::int32_t>(kAcesPage), "MSysACEs"},
    {static_cast<std::int32_t>(kQueriesPage), "MSysQueries"},
    {static_cast<std::int32_t>(kRelationshipsPage), "MSysRelationships"},
    {kTablesContainer, "Tables"},
    {kDatabasesContainer, "Databases"},
    {kRelationshipsContainer, "Relationships"},
    {0x10000000, "MSysDb"},
};

const ByteVector kEngineSid = {2, 3};
const ByteVector kAdminSid = {3, 1};
const std::set<ByteVector> kKnownSids = {kEngineSid, kAdminSid, {2, 1}, {2, 4}};
constexpr std::size_t kGroupSidBytes = 102;

/// Kinds of objects that always have permissions.
constexpr ObjectType kWithAces[] = {ObjectType::Table, ObjectType::Database, ObjectType::Container,
                                    ObjectType::Query, ObjectType::Relation};

bool IsKnownSid(const ByteVector& sid) {
    return kKnownSids.count(sid) != 0 || (sid.size() == kGroupSidBytes && sid.front() == 1);
}

std::string IdText(std::int32_t id) {
    return Hex8(static_cast<std::uint32_t>(id));
}

bool BelongsToEngine(const CatalogObject& object) {
    const auto type = static_cast<ObjectType>(object.type);
    return (object.flags & kEngineFlag) != 0 &&
           (type == ObjectType::Table || type == ObjectType::Container) &&
           (static_cast<std::uint32_t>(object.id) & 0xFFFF) < kEngineIds;
}

}  // namespace

std::vector<CatalogObject> ReadObjects(Context& context) {
    std::vector<CatalogObject> objects;
    SystemTable table(context.pager, kObjectsPage, context.header.ownerKey);
    table.ForEach([&](RowPointer at, const SystemTable::Row& row) {
        CatalogObject object;
        object.id = row.Long("Id");
        object.parentId = row.Long("ParentId");
        object.name = row.Text("Name");
        object.type = static_cast<std::int16_t>(row.Long("Type"));
        object.flags = static_cast<std::uint32_t>(row.Long("Flags"));
        object.owner = row.Deciphered("Owner");
        object.properties = row.Bytes("LvProp");
        object.at = at;
        objects.push_back(std::move(object));
    });
    return objects;
}

CatalogCheck::CatalogCheck(Context& context, const std::vector<CatalogObject>& objects)
    : context_(context), log_(context.log), objects_(objects) {
    for (const CatalogObject& object : objects_) {
        byId_[object.id] = &object;
    }
}

void CatalogCheck::Run(const std::vector<CheckedTable>& tables) {
    CheckIdentity();
    CheckParents();
    CheckEngineObjects();
    CheckOwners();
    CheckTableKinds(tables);
    Guard(log_, FindingKind::Unreadable, "MSysACEs", [&] { CheckAces(); });
    Guard(log_, FindingKind::Unreadable, "MSysQueries", [&] { CheckQueries(); });
}

void CatalogCheck::CheckIdentity() {
    std::map<std::int32_t, std::uint64_t> ids;
    std::map<std::pair<std::int32_t, std::string>, std::uint64_t> names;
    for (const CatalogObject& object : objects_) {
        ++ids[object.id];
        ++names[{object.parentId, text::Lower(object.name)}];
    }
    for (const auto& [id, count] : ids) {
        if (count > 1) {
            log_.Add(FindingKind::ObjectId, kObjectsTable, {IdText(id), Number(count)});
        }
    }
    for (const auto& [key, count] : names) {
        if (count > 1) {
            log_.Add(FindingKind::ObjectName, kObjectsTable, {key.second, Number(count)});
        }
    }
}

void CatalogCheck::CheckParents() {
    for (const CatalogObject& object : objects_) {
        const auto parent = byId_.find(object.parentId);
        if (parent == byId_.end() && object.parentId != kRootContainer) {
            log_.Add(FindingKind::ObjectParent, kObjectsTable, {object.name, IdText(object.parentId)});
        }
        if (object.IsTable() && (parent == byId_.end() || parent->second->name != "Tables")) {
            log_.Add(FindingKind::TableContainer, kObjectsTable, {object.name});
        }
    }
}

void CatalogCheck::CheckEngineObjects() {
    for (const FixedObject& fixed : kFixedObjects) {
        const auto object = byId_.find(fixed.id);
        if (object == byId_.end() || object->second->name != fixed.name) {
            log_.Add(FindingKind::EngineObject, kObjectsTable, {IdText(fixed.id), fixed.name});
        }
    }
}

void CatalogCheck::CheckOwners() {
    std::uint64_t foreign = 0;
    const CatalogObject* first = nullptr;
    for (const CatalogObject& object : objects_) {
        if (BelongsToEngine(object)) {
            if (object.owner != kEngineSid) {
                log_.Add(FindingKind::OwnerEngine, kObjectsTable, {object.name});
            }
        } else if (object.owner != kAdminSid && foreign++ == 0) {
            first = &object;
        }
    }
    if (first != nullptr) {
        log_.Add(FindingKind::OwnerForeign, kObjectsTable, {Number(foreign), first->name});
    }
}

void CatalogCheck::CheckTableKinds(const std::vector<CheckedTable>& tables) {
    for (const CheckedTable& table : tables) {
        const bool engine = (table.object->flags & kEngineFlag) != 0 &&
                            table.object->id < static_cast<std::int32_t>(kEngineIds);
        if ((table.definition.kind == 'S') != engine) {
            log_.Add(FindingKind::TableKindFlags, TablePlace(table.object->name));
        }
    }
}

void CatalogCheck::CheckAces() {
    std::set<std::int32_t> withAces;
    std::set<ByteVector> otherSids;
    SystemTable(context_.pager, kAcesPage, context_.header.ownerKey)
        .ForEach([&](RowPointer, const SystemTable::Row& row) {
            const std::int32_t id = row.Long("ObjectId");
            withAces.insert(id);
            if (byId_.count(id) == 0) {
                log_.Add(FindingKind::AceObject, "MSysACEs", {IdText(id)});
            }
            ByteVector sid = row.Deciphered("SID");
            if (!IsKnownSid(sid)) {
                otherSids.insert(std::move(sid));
            }
        });
    for (const ByteVector& sid : otherSids) {
        log_.Add(FindingKind::AceAccount, "MSysACEs", {text::Hex(sid)});
    }
    for (const CatalogObject& object : objects_) {
        const bool needsAces = std::find(std::begin(kWithAces), std::end(kWithAces),
                                         static_cast<ObjectType>(object.type)) != std::end(kWithAces);
        if (needsAces && withAces.count(object.id) == 0) {
            log_.Add(FindingKind::AceMissing, "MSysACEs", {object.name});
        }
    }
}

void CatalogCheck::CheckQueries() {
    SystemTable(context_.pager, kQueriesPage, context_.header.ownerKey)
        .ForEach([&](RowPointer, const SystemTable::Row& row) {
            const std::int32_t id = row.Long("ObjectId");
            if (byId_.count(id) == 0) {
                log_.Add(FindingKind::QueryObject, "MSysQueries", {IdText(id)});
            }
        });
}

}  // namespace tavrel::jet::check
