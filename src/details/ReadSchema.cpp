#include "details/ReadSchema.h"

#include <algorithm>

#include "jet/database/Database.h"
#include "text/Case.h"

namespace tavrel::details {

namespace {

constexpr std::string_view kEnginePrefix = "MSYS";

bool IsOfEngine(const std::string& table) {
    return text::Upper(table).starts_with(kEnginePrefix);
}

Column ColumnOf(const jet::Column& stored, const jet::PropertyBlob& properties) {
    const auto property = [&](std::string_view name) { return properties.OfColumn(stored.name, name); };
    const jet::Property* defaultValue = property("DefaultValue");
    const jet::Property* required = property("Required");
    const jet::Property* zeroLength = property("AllowZeroLength");
    const bool sized = stored.type == jet::ColumnType::Text || stored.type == jet::ColumnType::Binary ||
                       stored.type == jet::ColumnType::FixedBinary;
    const bool numeric = stored.type == jet::ColumnType::Numeric;
    Column column;
    column.name = stored.name;
    column.type = stored.type;
    column.size = sized ? stored.DaoSize() : 0;
    column.precision = numeric ? stored.precision : std::uint8_t{0};
    column.scale = numeric ? stored.scale : std::uint8_t{0};
    column.autonumber = stored.Autonumber();
    column.fixedWidth = sized && stored.Fixed();
    column.compressed = jet::IsText(stored.type) && stored.Compressed();
    column.defaultValue = defaultValue != nullptr ? defaultValue->AsText() : "";
    column.required = required != nullptr && required->AsBoolean();
    if (zeroLength != nullptr) {
        column.zeroLength = zeroLength->AsBoolean();
    }
    return column;
}

Table TableOf(jet::Database& database, const jet::CatalogObject& object) {
    const jet::TableDefinition& stored = database.Catalog().Definition(object.DefinitionPage());
    const jet::PropertyBlob properties = database.Catalog().Properties(object);
    Table table;
    table.name = object.name;
    table.ofEngine = object.IsSystem();
    table.rows = stored.rowCount;
    for (const std::size_t place : stored.ColumnsInOrder()) {
        table.columns.push_back(ColumnOf(stored.columns[place], properties));
    }
    table.indexes = database.Describe(object).indexes;
    std::erase_if(table.indexes, [](const jet::IndexInfo& index) { return index.foreign; });
    return table;
}

}  // namespace

Schema ReadSchema(jet::Database& database, const std::string& table) {
    const auto wanted = [&](const std::string& name) {
        return !IsOfEngine(name) && (table.empty() || text::EqualIgnoringCase(name, table));
    };
    Schema schema;
    schema.sortOrder = database.Header().sortOrder;
    for (const jet::CatalogObject& object : database.Catalog().Objects()) {
        if (object.IsTable() && wanted(object.name)) {
            schema.tables.push_back(TableOf(database, object));
        } else if (object.IsLinked() || object.type == static_cast<std::int16_t>(jet::ObjectType::Query)) {
            schema.otherNames.insert(text::Upper(object.name));
        }
    }
    std::ranges::sort(schema.tables, text::NameLess, &Table::name);
    for (jet::RelationInfo& relation : database.Relations()) {
        const bool ofEngine = IsOfEngine(relation.table) || IsOfEngine(relation.referencedTable);
        if (!ofEngine && (wanted(relation.table) || wanted(relation.referencedTable))) {
            schema.relations.push_back(std::move(relation));
        }
    }
    return schema;
}

Schema ReadSchema(const std::string& path, const std::string& password, const std::string& table) {
    jet::OpenOptions options;
    options.password = password;
    return ReadSchema(*jet::Database::Open(path, options), table);
}

}  // namespace tavrel::details
