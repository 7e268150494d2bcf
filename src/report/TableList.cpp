#include "report/TableList.h"

#include "report/CsvWriter.h"
#include "report/DisplayText.h"
#include "report/JsonWriter.h"
#include "report/LocalTables.h"

namespace tavrel::report {

void WriteTableNames(std::ostream& out, jet::Database& database, bool systemTables) {
    for (const jet::CatalogObject* object : LocalTables(database, systemTables)) {
        out << Printable(object->name) << '\n';
    }
}

void WriteTableListCsv(std::ostream& out, jet::Database& database, bool systemTables) {
    CsvWriter csv(out);
    csv.Row({"table", "fields", "rows", "system"});
    for (const jet::CatalogObject* object : LocalTables(database, systemTables)) {
        const jet::TableDefinition& table = database.Catalog().Definition(object->DefinitionPage());
        csv.Row({object->name, std::to_string(table.columns.size()), std::to_string(table.rowCount),
                 object->IsSystem() ? "true" : "false"});
    }
}

void WriteTableListJson(std::ostream& out, jet::Database& database, bool systemTables) {
    JsonWriter json(out, JsonText::Utf8, JsonLayout::Indented);
    json.BeginObject();
    json.Member("file", database.Path());
    json.Key("tables");
    json.BeginArray();
    for (const jet::CatalogObject* object : LocalTables(database, systemTables)) {
        const jet::TableDefinition& table = database.Catalog().Definition(object->DefinitionPage());
        json.BeginObject(JsonLayout::OneLine);
        json.Member("table", object->name);
        json.Member("fields", static_cast<std::int64_t>(table.columns.size()));
        json.Member("rows", std::int64_t{table.rowCount});
        json.Member("system", object->IsSystem());
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    out << '\n';
}

}  // namespace tavrel::report
