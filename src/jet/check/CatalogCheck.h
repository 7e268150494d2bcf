// MSysObjects: ids, names, parents, the engine's own objects, owners, properties; MSysACEs and MSysQueries,
// whose rows belong to objects.
#pragma once

#include <map>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/check/Context.h"

namespace tavrel::jet::check {

/// A table whose definition could be read.
struct CheckedTable {
    const CatalogObject* object = nullptr;
    TableDefinition definition;
};

/// The rows of MSysObjects that can be read.  Throws 3428 when the table itself cannot.
std::vector<CatalogObject> ReadObjects(Context& context);

class CatalogCheck {
  public:
    CatalogCheck(Context& context, const std::vector<CatalogObject>& objects);
    void Run(const std::vector<CheckedTable>& tables);

  private:
    void CheckIdentity();
    void CheckParents();
    void CheckEngineObjects();
    void CheckOwners();
    void CheckTableKinds(const std::vector<CheckedTable>& tables);
    void CheckAces();
    void CheckQueries();

    Context& context_;
    FindingLog& log_;
    const std::vector<CatalogObject>& objects_;
    std::map<std::int32_t, const CatalogObject*> byId_;
};

}  // namespace tavrel::jet::check
