#include "report/DatabaseDump.h"

#include <set>

#include "jet/catalog/RowCursor.h"
#include "report/JsonWriter.h"
#include "report/LineDigest.h"
#include "report/LocalTables.h"
#include "report/ValueText.h"
#include "text/Case.h"

namespace tavrel::report {

namespace {

struct TableDump {
    jet::TableInfo info;
    std::uint64_t rows = 0;
    std::string digest;
};

std::string RowLine(jet::RowCursor& cursor, const jet::TableDefinition& table,
                    const std::vector<std::size_t>& order) {
    std::string line;
    bool first = true;
    for (const std::size_t column : order) {
        if (!first) {
            line += '|';
        }
        first = false;
        const std::optional<jet::ByteVector> stored = cursor.Stored(column);
        line += stored ? CanonicalText(*stored, jet::DecodeValue(table.columns[column], *stored)) : "N";
    }
    return line;
}

TableDump ReadTable(jet::Database& database, const jet::CatalogObject& object) {
    const jet::TableDefinition& table = database.Catalog().Definition(object.DefinitionPage());
    const std::vector<std::size_t> order = table.ColumnsInOrder();
    jet::RowCursor cursor(database.Pager(), table, database.Catalog().OwnerKey());
    LineDigest lines;
    while (cursor.Next()) {
        lines.Add(RowLine(cursor, table, order));
    }
    return {.info = database.Describe(object), .rows = lines.Count(), .digest = lines.HexDigest()};
}

std::vector<TableDump> ReadTables(jet::Database& database, const DumpOptions& options) {
    const auto objects = LocalTables(database, options.systemTables);
    if (options.progress != nullptr) {
        options.progress->SetMaximum(static_cast<int>(objects.size()));
    }
    std::vector<TableDump> tables;
    for (const jet::CatalogObject* object : objects) {
        tables.push_back(ReadTable(database, *object));
        if (options.progress != nullptr) {
            options.progress->Advance();
        }
    }
    return tables;
}

void WriteColumns(JsonWriter& json, const std::vector<jet::FieldInfo>& fields) {
    json.Key("columns");
    json.BeginArray();
    std::int64_t ordinal = 0;
    for (const jet::FieldInfo& field : fields) {
        json.BeginObject();
        json.Member("name", field.name);
        json.Member("ordinal", ordinal++);
        json.Member("dao_type", std::int64_t{field.daoType});
        json.Member("size", std::int64_t{field.size});
        json.Member("default", field.defaultValue);
        json.Member("required", field.required);
        json.Member("allow_zero_length", field.allowZeroLength);
        json.Member("autonumber", field.autonumber);
        json.EndObject();
    }
    json.EndArray();
}

void WriteIndexFields(JsonWriter& json, const std::vector<jet::IndexFieldInfo>& fields) {
    json.Key("fields");
    json.BeginArray();
    for (const jet::IndexFieldInfo& field : fields) {
        json.BeginObject();
        json.Member("name", field.name);
        json.Member("descending", field.descending);
        json.EndObject();
    }
    json.EndArray();
}

void WriteIndexes(JsonWriter& json, const std::vector<jet::IndexInfo>& indexes) {
    json.Key("indexes");
    json.BeginArray();
    for (const jet::IndexInfo& index : indexes) {
        json.BeginObject();
        json.Member("name", index.name);
        json.Member("primary", index.primary);
        json.Member("unique", index.unique);
        json.Member("foreign", index.foreign);
        json.Member("ignore_nulls", index.ignoreNulls);
        json.Member("required", index.required);
        WriteIndexFields(json, index.fields);
        json.EndObject();
    }
    json.EndArray();
}

void WriteTable(JsonWriter& json, const TableDump& table) {
    json.BeginObject();
    json.Member("name", table.info.name);
    json.Member("system", table.info.system);
    WriteColumns(json, table.info.fields);
    WriteIndexes(json, table.info.indexes);
    json.Member("row_count", static_cast<std::int64_t>(table.rows));
    json.Member("rows_sha256", table.digest);
    json.EndObject();
}

void WriteNames(JsonWriter& json, std::string_view key, const std::vector<std::string>& names) {
    json.Key(key);
    json.BeginArray();
    for (const std::string& name : names) {
        json.String(name);
    }
    json.EndArray();
}

void WriteRelation(JsonWriter& json, const jet::RelationInfo& relation) {
    json.BeginObject();
    json.Member("name", relation.name);
    json.Member("table", relation.table);
    json.Member("referenced_table", relation.referencedTable);
    WriteNames(json, "columns", relation.columns);
    WriteNames(json, "referenced_columns", relation.referencedColumns);
    json.Member("update_cascade", relation.updateCascade);
    json.Member("delete_cascade", relation.deleteCascade);
    json.Member("enforced", relation.enforced);
    json.EndObject();
}

/// Those whose child table is listed; with the system tables, all.
std::vector<jet::RelationInfo> RelationsToDump(jet::Database& database, const std::vector<TableDump>& tables,
                                               bool all) {
    std::set<std::string> listed;
    for (const TableDump& table : tables) {
        listed.insert(text::Lower(table.info.name));
    }
    std::vector<jet::RelationInfo> relations = database.Relations();
    std::erase_if(relations, [&](const jet::RelationInfo& relation) {
        return !all && !listed.contains(text::Lower(relation.table));
    });
    return relations;
}

}  // namespace

void WriteDump(std::ostream& out, jet::Database& database, const DumpOptions& options) {
    const std::vector<TableDump> tables = ReadTables(database, options);
    const std::vector<jet::RelationInfo> relations = RelationsToDump(database, tables, options.systemTables);
    JsonWriter json(out, JsonText::Ascii, JsonLayout::Indented);
    json.BeginObject();
    json.Key("tables");
    json.BeginArray();
    for (const TableDump& table : tables) {
        WriteTable(json, table);
    }
    json.EndArray();
    json.Key("relations");
    json.BeginArray();
    for (const jet::RelationInfo& relation : relations) {
        WriteRelation(json, relation);
    }
    json.EndArray();
    json.EndObject();
    out << '\n';
}

}  // namespace tavrel::report
