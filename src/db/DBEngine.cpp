#include "db/DBEngine.h"

#include <algorithm>
#include <utility>

#include "db/ConnectText.h"
#include "jet/database/Database.h"
#include "text/Case.h"

namespace tavrel::db {

namespace {

constexpr std::int32_t kNotSet = 91;

TableDefs ListTables(Database& database, const std::vector<jet::CatalogObject>& catalog) {
    std::vector<const jet::CatalogObject*> objects;
    for (const jet::CatalogObject& object : catalog) {
        if (object.IsTable() || object.IsLinked()) {
            objects.push_back(&object);
        }
    }
    std::ranges::stable_sort(objects,
                             [](const auto* a, const auto* b) { return text::NameLess(a->name, b->name); });
    std::vector<TableDef> tables;
    tables.reserve(objects.size());
    for (const jet::CatalogObject* object : objects) {
        tables.emplace_back(database, *object);
    }
    return TableDefs(std::move(tables));
}

}  // namespace

Database::Database(std::unique_ptr<jet::Database> file) : file_(std::move(file)) {}

Database::~Database() = default;

TableDefs& Database::TableDefs() {
    jet::Database& file = File();
    if (!tableDefs_) {
        tableDefs_ = ListTables(*this, file.Catalog().Objects());
    }
    return *tableDefs_;
}

void Database::Close() {
    file_.reset();
}

jet::Database& Database::File() {
    if (!file_) {
        throw MakeError(kNotSet);
    }
    return *file_;
}

DBEngine& DBEngine::Instance() {
    static DBEngine engine;
    return engine;
}

std::unique_ptr<Database> DBEngine::OpenDatabase(const std::string& path, std::int16_t /*options*/,
                                                 std::optional<bool> /*readOnly*/,
                                                 const std::optional<std::string>& connect) {
    jet::OpenOptions options;
    options.password = PasswordOf(connect.value_or(std::string()));
    return std::make_unique<Database>(jet::Database::Open(path, options));
}

}  // namespace tavrel::db
