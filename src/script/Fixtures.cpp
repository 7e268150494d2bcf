#include "script/Fixtures.h"

#include <algorithm>

#include "details/Match.h"
#include "script/Names.h"
#include "text/Case.h"

namespace tavrel::script {

namespace {

std::string KeyOf(const std::string& table, const std::string& name) {
    return text::Upper(table) + "\n" + text::Upper(name);
}

/// Cannot be named, or not without naming another.
template <typename Thing>
bool IsUnnamed(const std::vector<Thing>& things, const Thing& thing) {
    return !CanBeNamed(thing.name) || std::ranges::count_if(things, [&](const Thing& other) {
                                          return text::EqualIgnoringCase(other.name, thing.name);
                                      }) > 1;
}

}  // namespace

bool IsKeyOver(const jet::IndexInfo& index, const std::vector<std::string>& columns) {
    return index.unique && index.fields.size() == columns.size() &&
           std::ranges::all_of(index.fields, [&](const jet::IndexFieldInfo& field) {
               return std::ranges::any_of(columns, [&](const std::string& column) {
                   return text::EqualIgnoringCase(column, field.name);
               });
           });
}

Fixtures::Fixtures(const details::Schema& schema) {
    for (const details::Table& table : schema.tables) {
        if (table.ofEngine || IsUnnamed(schema.tables, table)) {
            tables_.insert(text::Upper(table.name));
        }
        FixUnnamed(table);
    }
    for (const jet::RelationInfo& relation : schema.relations) {
        const details::Table* child = details::FindNamed(schema.tables, relation.table);
        const details::Table* parent = details::FindNamed(schema.tables, relation.referencedTable);
        if (IsUnnamed(schema.relations, relation) || child == nullptr || parent == nullptr || Fixed(*child) ||
            Fixed(*parent)) {
            relations_.insert(text::Upper(relation.name));
        }
    }
    FixWhatRelationsRestOn(schema);
}

void Fixtures::FixUnnamed(const details::Table& table) {
    for (const details::Column& column : table.columns) {
        if (IsUnnamed(table.columns, column)) {
            columns_.insert(KeyOf(table.name, column.name));
        }
    }
    for (const jet::IndexInfo& index : table.indexes) {
        if (!IsUnnamed(table.indexes, index)) {
            continue;
        }
        indexes_.insert(KeyOf(table.name, index.name));
        for (const jet::IndexFieldInfo& field : index.fields) {
            columns_.insert(KeyOf(table.name, field.name));
        }
    }
}

void Fixtures::FixWhatRelationsRestOn(const details::Schema& schema) {
    for (const jet::RelationInfo& relation : schema.relations) {
        if (!Fixed(relation)) {
            continue;
        }
        for (const std::string& column : relation.columns) {
            columns_.insert(KeyOf(relation.table, column));
        }
        for (const std::string& column : relation.referencedColumns) {
            columns_.insert(KeyOf(relation.referencedTable, column));
        }
        if (const details::Table* parent = details::FindNamed(schema.tables, relation.referencedTable)) {
            for (const jet::IndexInfo& index : parent->indexes) {
                if (IsKeyOver(index, relation.referencedColumns)) {
                    indexes_.insert(KeyOf(parent->name, index.name));
                }
            }
        }
    }
}

bool Fixtures::Fixed(const details::Table& table) const {
    return tables_.contains(text::Upper(table.name));
}

bool Fixtures::Fixed(const details::Table& table, const details::Column& column) const {
    return Fixed(table) || columns_.contains(KeyOf(table.name, column.name));
}

bool Fixtures::Fixed(const details::Table& table, const jet::IndexInfo& index) const {
    return Fixed(table) || indexes_.contains(KeyOf(table.name, index.name));
}

bool Fixtures::Fixed(const jet::RelationInfo& relation) const {
    return relations_.contains(text::Upper(relation.name));
}

}  // namespace tavrel::script
