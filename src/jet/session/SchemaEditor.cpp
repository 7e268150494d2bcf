#include "jet/session/SchemaEditor.h"

#include <algorithm>
#include <random>

#include "jet/catalog/RowCursor.h"
#include "jet/define/CreateDefinition.h"
#include "jet/define/CreateNames.h"
#include "jet/define/Writer.h"
#include "jet/session/ColumnChanges.h"
#include "jet/session/SchemaErrors.h"
#include "jet/storage/TextCoding.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

/// A name for what was not named: a prefix and digits of a new GUID, as the engine makes them.
std::string GeneratedName(std::string_view prefix) {
    static std::mt19937_64 source{std::random_device{}()};
    static constexpr const char* kDigits = "0123456789ABCDEF";
    std::string name(prefix);
    const std::uint64_t bits = source();
    for (int i = 0; i < 16; ++i) {
        name += i == 8 || i == 12 ? "_" : "";
        name += kDigits[bits >> (4 * i) & 15];
    }
    return name;
}

std::vector<CatalogObject> RelationObjects(SchemaContext& context, const std::string& name) {
    std::vector<CatalogObject> found;
    for (const CatalogObject& object : context.File().Catalog().Objects()) {
        if (object.type == static_cast<std::int16_t>(ObjectType::Relation) &&
            text::EqualIgnoringCase(object.name, name)) {
            found.push_back(object);
        }
    }
    return found;
}

/// Takes the index entry of one side of a relation out of its table.
void DropSide(SchemaContext& context, PageNumber page, std::uint32_t number) {
    ChangedTable table{{}, ReadTableDefinition(context.Pages(), page), {}};
    const auto found = std::ranges::find(table.definition.logicalIndexes, number, &LogicalIndex::number);
    if (found != table.definition.logicalIndexes.end()) {
        RemoveLogicalIndex(context, table.definition,
                           static_cast<std::size_t>(found - table.definition.logicalIndexes.begin()));
        context.Store(table);
    }
}

void DropRelationRows(SchemaContext& context, const std::string& name) {
    EditedTable& relations = context.Edits().Edit(kRelationshipsPage);
    const std::size_t place = relations.Definition().FindColumnByName("szRelationship");
    std::vector<RowPointer> rows;
    for (RowCursor cursor(context.Pages(), relations.Definition(), 0); cursor.Next();) {
        const Value value = cursor.Get(place);
        const auto* text = std::get_if<std::string>(&value);
        if (text != nullptr && text::EqualIgnoringCase(*text, name)) {
            rows.push_back(cursor.At());
        }
    }
    for (const RowPointer row : rows) {
        relations.Delete(row);
    }
    context.Edits().Save();
    context.Edits().Forget();
}

/// A relation goes from all the places where it is recorded.
void DropRelation(SchemaContext& context, const RelationInfo& relation) {
    const CatalogObject* child = context.File().Catalog().FindTable(relation.table);
    if (relation.enforced && child != nullptr) {
        const TableDefinition table = ReadTableDefinition(context.Pages(), child->DefinitionPage());
        for (const LogicalIndex& index : table.logicalIndexes) {
            if (index.side == RelationSide::Child && text::EqualIgnoringCase(index.name, relation.name)) {
                DropSide(context, table.page, index.number);
                DropSide(context, index.partnerPage, index.partner);
            }
        }
    }
    DropRelationRows(context, relation.name);
    for (const CatalogObject& object : RelationObjects(context, relation.name)) {
        context.DropObject(object);
    }
}

}  // namespace

void SchemaEditor::CreateTable(const sql::TableCreation& table) {
    NewTable wanted{.name = table.name, .columns = {}, .indexes = table.indexes};
    for (const sql::ColumnDefinition& column : table.columns) {
        wanted.columns.push_back(column.column);
    }
    for (NewIndex& index : wanted.indexes) {
        index.name = index.name.empty() ? GeneratedName("Index_") : index.name;
    }
    context_.Edits().Save();
    Writer(context_.Edits(), context_.File().Catalog(), context_.File().Header(), std::nullopt)
        .CreateTable(wanted);
    for (const sql::ColumnDefinition& column : table.columns) {
        if (column.seedGiven) {
            AlterColumn(table.name, column);
        }
    }
    for (const sql::ForeignKeyDefinition& key : table.foreignKeys) {
        AddForeignKey(key);
    }
}

void SchemaEditor::AddColumn(const std::string& table, const sql::ColumnDefinition& column) {
    ChangedTable changed = context_.Load(table, definitionErrors::kNoTableOrConstraint);
    AddColumnTo(context_, changed, column);
}

void SchemaEditor::AlterColumn(const std::string& table, const sql::ColumnDefinition& column) {
    ChangedTable changed = context_.Load(table, definitionErrors::kNoTableOrConstraint);
    AlterColumnOf(context_, changed, column);
}

void SchemaEditor::SetDefault(const std::string& table, const std::string& column, const std::string& text) {
    ChangedTable changed = context_.Load(table, definitionErrors::kNoTableOrConstraint);
    const std::size_t place = changed.definition.FindColumnByName(column);
    if (place == TableDefinition::npos) {
        throw MakeError(schemaErrors::kNoSuchColumn, {column, table});
    }
    const std::string& name = changed.definition.columns[place].name;
    changed.properties.Erase(name, "DefaultValue");
    if (!text.empty()) {
        changed.properties.Set(name, {"DefaultValue", static_cast<std::uint8_t>(ColumnType::Memo), true,
                                      PlainText(text::Utf16FromUtf8(text))});
    }
    context_.StoreProperties(changed);
}

void SchemaEditor::DropColumn(const std::string& table, const std::string& column) {
    ChangedTable changed = context_.Load(table, definitionErrors::kNoTableOrConstraint);
    const std::size_t place = changed.definition.FindColumnByName(column);
    if (place == TableDefinition::npos) {
        throw MakeError(schemaErrors::kNoSuchColumn, {column, table});
    }
    DropColumnOf(context_, changed, place);
}

void SchemaEditor::AddIndex(const std::string& table, const NewIndex& index) {
    ChangedTable changed = context_.Load(table, definitionErrors::kNoTableOrConstraint);
    NewIndex named = index;
    named.name = index.name.empty() ? GeneratedName("Index_") : index.name;
    if (changed.definition.logicalIndexes.size() >= kMaxIndexes) {
        throw MakeError(errors::kTooManyIndexes, {changed.object.name});
    }
    AddIndexDefinition(changed.definition, named, changed.object.name);
    context_.GiveTree(changed, changed.definition.realIndexes.back());
    context_.Store(changed);
}

void SchemaEditor::AddForeignKey(const sql::ForeignKeyDefinition& key) {
    RelationInfo relation = key.relation;
    relation.deleteSetsNull = key.deleteSetsNull;
    if (key.updateSetsNull) {
        throw MakeError(schemaErrors::kInConstraint, {}, "ON UPDATE SET NULL은 지원하지 않음");
    }
    relation.name = relation.name.empty() ? GeneratedName("Rel_") : relation.name;
    for (const std::string& table : {relation.table, relation.referencedTable}) {
        context_.Load(table, definitionErrors::kNoTableOrConstraint);  // there, and not the engine's own
    }
    Writer(context_.Edits(), context_.File().Catalog(), context_.File().Header(), std::nullopt)
        .CreateRelation(relation);
}

void SchemaEditor::DropConstraint(const std::string& table, const std::string& name) {
    for (const RelationInfo& relation : context_.File().Relations()) {
        if (text::EqualIgnoringCase(relation.name, name) && text::EqualIgnoringCase(relation.table, table)) {
            context_.Edits().Save();
            context_.Edits().Forget();
            DropRelation(context_, relation);
            return;
        }
    }
    DropIndex(table, name);
}

void SchemaEditor::DropIndex(const std::string& table, const std::string& name) {
    ChangedTable changed = context_.Load(table, definitionErrors::kNoTableOrConstraint);
    std::vector<LogicalIndex>& indexes = changed.definition.logicalIndexes;
    const auto found = std::ranges::find_if(indexes, [&](const LogicalIndex& index) {
        return index.side != RelationSide::Parent && text::EqualIgnoringCase(index.name, name);
    });
    if (found == indexes.end()) {
        throw MakeError(definitionErrors::kNoTableOrConstraint, {}, name);
    }
    const bool keyOfRelation = std::ranges::any_of(indexes, [&](const LogicalIndex& index) {
        return index.side == RelationSide::Parent && index.real == found->real;
    });
    if (keyOfRelation || found->side == RelationSide::Child) {
        throw MakeError(schemaErrors::kUsedInRelation);
    }
    RemoveLogicalIndex(context_, changed.definition, static_cast<std::size_t>(found - indexes.begin()));
    context_.Store(changed);
}

void SchemaEditor::DropTable(const std::string& table) {
    ChangedTable changed = context_.Load(table, schemaErrors::kNoSuchTableToDrop);
    for (const LogicalIndex& index : changed.definition.logicalIndexes) {
        if (index.side == RelationSide::Parent && index.partnerPage != changed.definition.page) {
            throw MakeError(schemaErrors::kUsedInRelation);
        }
    }
    for (const RelationInfo& relation : context_.File().Relations()) {
        if (text::EqualIgnoringCase(relation.table, table) ||
            text::EqualIgnoringCase(relation.referencedTable, table)) {
            DropRelation(context_, relation);
        }
    }
    changed = context_.Load(table, schemaErrors::kNoSuchTableToDrop);
    TableDefinition& definition = changed.definition;
    for (const Column& column : definition.columns) {
        if (column.hasMaps) {
            context_.FreeMapped(column.ownedMap);
            context_.DropMap(column.freeMap);
        }
    }
    for (const RealIndex& index : definition.realIndexes) {
        context_.FreeMapped(index.map);
    }
    context_.FreeMapped(definition.ownedMap);
    context_.DropMap(definition.freeMap);
    for (const PageNumber page : definition.pages) {
        context_.Allocator().Free(page);
    }
    context_.DropObject(changed.object);
}

}  // namespace tavrel::jet
