#include "support/DatabaseBuilder.h"

#include <fstream>
#include <iterator>

#include "jet/catalog/RowCursor.h"

namespace tavrel::testing {

Table& Table::Column(const std::string& name, jet::ColumnType type, unsigned size) {
    jet::NewColumn& column = spec_.columns.emplace_back();
    column.name = name;
    column.type = type;
    column.size = size;
    return *this;
}

Table& Table::Counter(const std::string& name) {
    Long(name);
    spec_.columns.back().autonumber = true;
    return *this;
}

Table& Table::Required() {
    spec_.columns.back().required = true;
    return *this;
}

Table& Table::Default(const std::string& expression) {
    spec_.columns.back().defaultValue = expression;
    return *this;
}

Table& Table::ZeroLength(bool allowed) {
    using enum jet::NewColumn::ZeroLength;
    spec_.columns.back().zeroLength = allowed ? Allowed : Refused;
    return *this;
}

Table& Table::Uncompressed() {
    spec_.columns.back().compressed = false;
    return *this;
}

Table& Table::Describe(const std::string& description) {
    spec_.columns.back().description = description;
    return *this;
}

Table& Table::Digits(unsigned precision, unsigned scale) {
    spec_.columns.back().precision = static_cast<std::uint8_t>(precision);
    spec_.columns.back().scale = static_cast<std::uint8_t>(scale);
    return *this;
}

Table& Table::Index(const std::string& name, const std::vector<std::string>& fields) {
    jet::NewIndex& index = spec_.indexes.emplace_back();
    index.name = name;
    for (const std::string& field : fields) {
        index.fields.push_back({field, false});
    }
    return *this;
}

Table& Table::Key(const std::vector<std::string>& fields, const std::string& name) {
    Index(name, fields);
    spec_.indexes.back().primary = true;
    return *this;
}

Table& Table::Unique(const std::string& name, const std::vector<std::string>& fields) {
    Index(name, fields);
    spec_.indexes.back().unique = true;
    return *this;
}

Table& Table::IgnoreNulls() {
    spec_.indexes.back().ignoreNulls = true;
    return *this;
}

Table& Table::NoNulls() {
    spec_.indexes.back().required = true;
    return *this;
}

Table& Table::Descending() {
    for (jet::IndexFieldInfo& field : spec_.indexes.back().fields) {
        field.descending = true;
    }
    return *this;
}

DatabaseBuilder::DatabaseBuilder(const std::string& path, const jet::CreateOptions& options)
    : database_(jet::Database::Create(path, options)) {}

void DatabaseBuilder::Rows(const std::string& table, const std::vector<std::vector<jet::Value>>& rows) {
    const std::unique_ptr<jet::TableWriter> writer = database_->Append(table);
    for (const std::vector<jet::Value>& row : rows) {
        writer->Append(row);
    }
    writer->Finish();
}

std::string DatabaseBuilder::Finish() {
    const std::string path = database_->Path();
    database_->Flush();
    database_.reset();
    return path;
}

std::vector<std::vector<jet::Value>> ReadRows(jet::Database& database, const std::string& table) {
    const jet::CatalogObject* object = database.Catalog().FindTable(table);
    const jet::TableDefinition& definition = database.Catalog().Definition(object->DefinitionPage());
    std::vector<std::vector<jet::Value>> rows;
    for (jet::RowCursor cursor(database.Pager(), definition, database.Header().ownerKey); cursor.Next();) {
        std::vector<jet::Value>& row = rows.emplace_back();
        for (const std::size_t place : definition.ColumnsInOrder()) {
            row.push_back(cursor.Get(place));
        }
    }
    return rows;
}

std::string ReadWholeFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace tavrel::testing
