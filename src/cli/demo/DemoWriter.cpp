#include "cli/demo/DemoWriter.h"

#include "cli/demo/DemoTables.h"
#include "jet/database/Database.h"
#include "jet/define/TableWriter.h"

namespace tavrel::cli {

namespace {

jet::NewTable NewTableOf(const DemoTable& table, bool a) {
    jet::NewTable wanted{.name = table.name, .columns = {}, .indexes = {}};
    for (const DemoField& field : table.fields) {
        if (IsIn(field.where, a)) {
            wanted.columns.push_back(field.column);
        }
    }
    for (const DemoIndex& index : table.indexes) {
        if (IsIn(index.where, a)) {
            wanted.indexes.push_back(index.index);
        }
    }
    return wanted;
}

void Fill(jet::Database& database, const DemoTable& table, bool a) {
    const auto writer = database.Append(table.name);
    for (const std::vector<jet::Value>& row : table.rows) {
        std::vector<jet::Value> values;
        for (std::size_t place = 0; place < row.size(); ++place) {
            if (IsIn(table.fields[place].where, a)) {
                values.push_back(row[place]);
            }
        }
        writer->Append(values);
    }
    writer->Finish();
}

}  // namespace

void WriteDemoDatabase(const std::string& path, bool a) {
    const auto database = jet::Database::Create(path);
    for (const DemoTable& table : DemoTables()) {
        if (IsIn(table.where, a)) {
            database->CreateTable(NewTableOf(table, a));
        }
    }
    for (const DemoRelation& relation : DemoRelations()) {
        if (IsIn(relation.where, a)) {
            database->CreateRelation(relation.relation);
        }
    }
    for (const DemoTable& table : DemoTables()) {
        if (IsIn(table.where, a)) {
            Fill(*database, table, a);
        }
    }
    database->Flush();
}

bool IsDemoDatabase(const std::string& path) {
    try {
        const auto database = jet::Database::Open(path);
        const DemoTable marked = DemoCustomers();
        const jet::CatalogObject* object = database->Catalog().FindTable(marked.name);
        if (object == nullptr) {
            return false;
        }
        const jet::PropertyBlob properties = database->Catalog().Properties(*object);
        const jet::Property* description =
            properties.OfColumn(marked.fields.front().column.name, "Description");
        return description != nullptr && description->AsText() == kDemoDescription;
    } catch (const Error&) {
        // A file that we cannot read is none that we have made, and must not be overwritten.
        return false;
    }
}

}  // namespace tavrel::cli
