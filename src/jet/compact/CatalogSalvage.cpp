#include "jet/compact/CatalogSalvage.h"

#include <algorithm>

#include "jet/catalog/RowCursor.h"
#include "jet/compact/DefinitionRepair.h"
#include "jet/define/EngineObjects.h"
#include "jet/storage/Rc4.h"
#include "jet/table/RowBuilder.h"
#include "text/Case.h"

namespace tavrel::jet::compact {

namespace {

enum Place : std::size_t { kObjects, kAces, kQueries, kRelations };
constexpr const char* kNames[] = {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"};
constexpr std::int32_t kLastEngineTable = kRelationshipsPage;
/// What everybody may do with a table or query, and with a relation.
constexpr std::int32_t kObjectMask = 0xFFEFF;
constexpr std::int32_t kRelationMask = 0xFFFFF;

bool NeedsAces(std::int16_t type) {
    constexpr ObjectType kWithAces[] = {ObjectType::Table, ObjectType::Database, ObjectType::Container,
                                        ObjectType::Query, ObjectType::Relation};
    return std::ranges::find(kWithAces, static_cast<ObjectType>(type)) != std::end(kWithAces);
}

std::int32_t NewId(const ObjectIds& ids, std::int32_t id) {
    const auto found = ids.find(id);
    return found == ids.end() ? id : found->second;
}

}  // namespace

CatalogSalvage::CatalogSalvage(SourcePages& source, const SourceSurvey& survey, const FileHeader& header,
                               std::vector<TableDefinition> systemTables, LossLog& losses)
    : source_(source),
      survey_(survey),
      header_(header),
      systemTables_(std::move(systemTables)),
      losses_(losses) {
    ReadObjects();
    ReadAces();
}

// ---- values

Value CatalogSalvage::Get(std::size_t place, const StoredFields& fields, std::string_view column) const {
    const std::size_t at = systemTables_[place].FindColumnByName(column);
    return fields[at] ? DecodeValue(systemTables_[place].columns[at], *fields[at]) : Value{Null{}};
}

std::int32_t CatalogSalvage::Number(std::size_t place, const StoredFields& fields,
                                    std::string_view column) const {
    const Value value = Get(place, fields, column);
    const auto* number = std::get_if<std::int64_t>(&value);
    return number != nullptr ? static_cast<std::int32_t>(*number) : 0;
}

std::string CatalogSalvage::Text(std::size_t place, const StoredFields& fields,
                                 std::string_view column) const {
    const Value value = Get(place, fields, column);
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : std::string();
}

void CatalogSalvage::PutNumber(std::size_t place, StoredFields& fields, std::string_view column,
                               std::int32_t value) const {
    ByteVector bytes(4);
    PutU32(bytes, 0, static_cast<std::uint32_t>(value));
    fields[systemTables_[place].FindColumnByName(column)] = std::move(bytes);
}

StoredFields CatalogSalvage::Encode(std::size_t place,
                                    std::initializer_list<std::pair<std::string_view, Value>> values) const {
    const TableDefinition& table = systemTables_[place];
    std::vector<Value> row(table.columns.size());
    for (const auto& [name, value] : values) {
        row[table.FindColumnByName(name)] = value;
    }
    const std::string tableName = kNames[place];
    RowBuilder builder(tableName, table, {}, header_.ownerKey);
    builder.Encode(row);
    return builder.Fields();
}

// ---- reading

void CatalogSalvage::ReadObjects() {
    LossLog told;  // once more when the rows are written
    RowSalvage rows(source_, systemTables_[kObjects], kNames[kObjects],
                    survey_.PagesOf(systemTables_[kObjects], kNames[kObjects], told), told);
    std::set<std::int32_t> ids;
    std::set<std::pair<std::int32_t, std::string>> names;
    for (const RowPointer at : rows.Rows()) {
        const std::optional<StoredFields> fields = rows.Read(at, false);
        if (!fields) {
            continue;
        }
        const Object object{Number(kObjects, *fields, "Id"), Number(kObjects, *fields, "ParentId"),
                            Text(kObjects, *fields, "Name"),
                            static_cast<std::int16_t>(Number(kObjects, *fields, "Type"))};
        const bool fresh = !object.name.empty() && ids.insert(object.id).second &&
                           names.insert({object.parentId, text::Lower(object.name)}).second;
        if (fresh) {
            objects_.push_back(object);
            kept_.insert(object.id);
        }
        changed_ = changed_ || !fresh;
    }
    const auto missing = std::ranges::count_if(
        EngineObjects(0), [this](const NewObject& object) { return !kept_.contains(object.id); });
    if (missing > 0) {
        changed_ = true;
        losses_.Add(kNames[kObjects], "엔진의 개체 " + std::to_string(missing) + "개의 행을 잃음: 새로 만듦");
    }
    if (told.Count() > 0 || missing > 0) {
        FindNamelessTables();
    }
    if (objects_.empty()) {
        ThrowDamaged("개체 목록과 테이블을 하나도 읽을 수 없음");  // an empty database is no repair of it
    }
}

/// Where objects are lost, tables with rows that no object names are theirs.  (In a sound catalog such pages
/// are left over and mean nothing.)
void CatalogSalvage::FindNamelessTables() {
    for (const PageNumber page : survey_.DefinitionPages()) {
        const auto id = static_cast<std::int32_t>(page);
        if (id <= kLastEngineTable || kept_.contains(id) || survey_.RowsOf(page) == 0) {
            continue;
        }
        std::string name = "Recovered" + std::to_string(nameless_.size() + 1);  // letters of every sort order
        while (std::ranges::find(objects_, name, &Object::name) != objects_.end()) {
            name += "_";
        }
        nameless_.push_back({id, kTablesContainer, name, static_cast<std::int16_t>(ObjectType::Table)});
        objects_.push_back(nameless_.back());
        kept_.insert(id);
        changed_ = true;
        losses_.Add("페이지 " + std::to_string(page), "테이블의 이름을 잃음: '" + name + "'(으)로 옮김");
    }
}

void CatalogSalvage::ReadAces() {
    LossLog told;
    RowSalvage rows(source_, systemTables_[kAces], kNames[kAces],
                    survey_.PagesOf(systemTables_[kAces], kNames[kAces], told), told);
    for (const RowPointer at : rows.Rows()) {
        if (const std::optional<StoredFields> fields = rows.Read(at, false)) {
            const std::int32_t id = Number(kAces, *fields, "ObjectId");
            withAces_.insert(id);
            changed_ = changed_ || !kept_.contains(id);
        }
    }
    changed_ = changed_ || std::ranges::any_of(objects_, [&](const Object& object) {
                   return NeedsAces(object.type) && !withAces_.contains(object.id);
               });
}

// ---- tables

std::vector<SourceTable> CatalogSalvage::Tables() {
    std::vector<SourceTable> tables;
    for (const Object& object : objects_) {
        if (object.type != static_cast<std::int16_t>(ObjectType::Table) ||
            (object.id >= static_cast<std::int32_t>(kObjectsPage) && object.id <= kLastEngineTable)) {
            continue;
        }
        const auto page = static_cast<PageNumber>(object.id);
        try {
            if (object.id < 0 || page >= source_.Count()) {
                ThrowDamaged("테이블의 번호가 잘못됨");
            }
            SourceTable table{object.name, ReadTableDefinition(source_.Cache(), page), true};
            table.intact = RepairDefinition(table.definition, table.name, losses_);
            tables.push_back(std::move(table));
        } catch (const Error& error) {
            RequireDamage(error);
            losses_.Add("테이블 " + object.name + " 정의", error);
            losses_.Add("테이블 " + object.name,
                        "테이블을 잃음 (남아 있는 행 " + std::to_string(survey_.RowsOf(page)) + "개)");
            kept_.erase(object.id);
            changed_ = true;
        }
    }
    std::ranges::stable_sort(tables, text::NameLess, &SourceTable::name);
    SettleRelations(tables);
    return tables;
}

void CatalogSalvage::SettleRelations(std::vector<SourceTable>& tables) {
    RelationNames names;
    for (const Object& object : objects_) {
        names.Add(static_cast<ObjectType>(object.type), object.name);
    }
    RelationSalvage relations(tables, losses_);
    if (!relations.Settle(ReadRelationRows(), names)) {
        brokenRelations_ = relations.Broken();
        changed_ = true;
    }
}

std::vector<RelationRow> CatalogSalvage::ReadRelationRows() {
    LossLog told;  // once more when the rows are written
    RowSalvage rows(source_, systemTables_[kRelations], kNames[kRelations],
                    survey_.PagesOf(systemTables_[kRelations], kNames[kRelations], told), told);
    std::vector<RelationRow> relations;
    for (const RowPointer at : rows.Rows()) {
        if (const std::optional<StoredFields> fields = rows.Read(at, false)) {
            const auto text = [&](const char* column) { return Text(kRelations, *fields, column); };
            const auto number = [&](const char* column) { return Number(kRelations, *fields, column); };
            relations.push_back({text("szRelationship"), static_cast<std::uint32_t>(number("grbit")),
                                 number("ccolumn"), number("icolumn"), text("szObject"), text("szColumn"),
                                 text("szReferencedObject"), text("szReferencedColumn")});
        }
    }
    return relations;
}

// ---- rows of the system tables

bool CatalogSalvage::KeepObject(StoredFields& fields, const ObjectIds& ids, bool tell) {
    const std::int32_t id = Number(kObjects, fields, "Id");
    const std::string name = Text(kObjects, fields, "Name");
    const auto type = static_cast<ObjectType>(Number(kObjects, fields, "Type"));
    const std::int32_t parent = Number(kObjects, fields, "ParentId");
    const bool broken = type == ObjectType::Relation && brokenRelations_.contains(text::Lower(name));
    // The rows are looked at twice; the first time tells which of several stays.
    const bool fresh =
        !tell || (seenIds_.insert(id).second && seenNames_.insert({parent, text::Lower(name)}).second);
    if (broken || !fresh || !kept_.contains(id)) {
        if (tell && kept_.contains(id)) {
            losses_.Add("MSysObjects", "개체 " + name + "을(를) 옮길 수 없음");
        }
        if (broken) {
            kept_.erase(id);
        }
        return false;
    }
    if (type == ObjectType::Table && parent != kTablesContainer) {
        PutNumber(kObjects, fields, "ParentId", kTablesContainer);
    }
    PutNumber(kObjects, fields, "Id", NewId(ids, id));
    return true;
}

std::vector<StoredFields> CatalogSalvage::MissingObjects(const ObjectIds& ids) const {
    std::vector<StoredFields> rows;
    std::vector<NewObject> objects = EngineObjects(header_.created);
    std::erase_if(objects, [&](const NewObject& object) { return kept_.contains(object.id); });
    for (const Object& table : nameless_) {
        if (kept_.contains(table.id)) {
            objects.push_back({NewId(ids, table.id),
                               table.parentId,
                               table.name,
                               ObjectType::Table,
                               0,
                               accounts::kAdmin,
                               header_.created,
                               {}});
        }
    }
    for (const NewObject& object : objects) {
        rows.push_back(Encode(kObjects, {{"Id", std::int64_t{object.id}},
                                         {"ParentId", std::int64_t{object.parentId}},
                                         {"Name", object.name},
                                         {"Type", std::int64_t{static_cast<std::int16_t>(object.type)}},
                                         {"DateCreate", Date{object.created}},
                                         {"DateUpdate", Date{object.created}},
                                         {"Owner", object.owner},
                                         {"Flags", std::int64_t{static_cast<std::int32_t>(object.flags)}}}));
    }
    return rows;
}

/// Everybody may do with an object what everybody may do with a new one.
std::vector<StoredFields> CatalogSalvage::MissingAces(const ObjectIds& ids) const {
    std::vector<StoredFields> rows;
    const auto add = [&](std::int32_t id, const ByteVector& account, std::int32_t mask, bool inheritable) {
        rows.push_back(Encode(kAces, {{"ObjectId", std::int64_t{NewId(ids, id)}},
                                      {"SID", account},
                                      {"ACM", std::int64_t{mask}},
                                      {"FInheritable", inheritable}}));
    };
    for (const Permission& permission : EnginePermissions()) {
        if (!withAces_.contains(permission.objectId)) {
            add(permission.objectId, *permission.account, static_cast<std::int32_t>(permission.mask),
                permission.inheritable);
        }
    }
    for (const Object& object : objects_) {
        const bool engine = std::ranges::any_of(EnginePermissions(), [&](const Permission& permission) {
            return permission.objectId == object.id;
        });
        if (engine || !kept_.contains(object.id) || !NeedsAces(object.type) ||
            withAces_.contains(object.id)) {
            continue;
        }
        const bool relation = object.type == static_cast<std::int16_t>(ObjectType::Relation);
        for (const ByteVector* account : {&accounts::kAdmin, &accounts::kAdmins, &accounts::kUsers}) {
            add(object.id, *account, relation ? kRelationMask : kObjectMask, false);
        }
    }
    return rows;
}

SalvageRules CatalogSalvage::RulesFor(std::size_t place, const ObjectIds& ids) {
    SalvageRules rules;
    if (place == kObjects) {
        rules.keep = [this, &ids](StoredFields& fields, bool tell) { return KeepObject(fields, ids, tell); };
        rules.added = MissingObjects(ids);
    } else if (place == kAces || place == kQueries) {
        rules.keep = [this, &ids, place](StoredFields& fields, bool tell) {
            const std::int32_t id = Number(place, fields, "ObjectId");
            const bool engine = place == kAces &&
                                std::ranges::any_of(EngineObjects(0),
                                                    [&](const NewObject& object) { return object.id == id; });
            if (!engine && !kept_.contains(id)) {
                if (tell) {
                    losses_.Add(kNames[place], "없는 개체 " + std::to_string(id) + "의 행");
                }
                return false;
            }
            PutNumber(place, fields, "ObjectId", NewId(ids, id));
            return true;
        };
        if (place == kAces) {
            rules.added = MissingAces(ids);
        }
    } else {
        rules.keep = [this](StoredFields& fields, bool tell) {
            const std::string name = Text(kRelations, fields, "szRelationship");
            const bool broken = brokenRelations_.contains(text::Lower(name));
            if (broken && tell) {
                losses_.Add(kNames[kRelations], "관계 " + name);
            }
            return !broken;
        };
    }
    return rules;
}

}  // namespace tavrel::jet::compact
