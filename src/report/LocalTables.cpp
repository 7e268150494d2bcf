#include "report/LocalTables.h"

#include <algorithm>

#include "text/Case.h"

namespace tavrel::report {

std::vector<const jet::CatalogObject*> LocalTables(jet::Database& database, bool systemTables) {
    std::vector<const jet::CatalogObject*> tables;
    for (const jet::CatalogObject& object : database.Catalog().Objects()) {
        if (object.IsTable() && (systemTables || !object.IsSystem())) {
            tables.push_back(&object);
        }
    }
    std::sort(tables.begin(), tables.end(),
              [](const auto* a, const auto* b) { return text::NameLess(a->name, b->name); });
    return tables;
}

}  // namespace tavrel::report
