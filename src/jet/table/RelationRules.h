// Referential integrity: what a change of one row asks of the rows of related tables.
//
//   child side   a key without nulls must be one of the parent's                              3201
//   parent side  a key that children have may not go or change (3200) unless the relation says that they go
//                or change with it, or lose their key
//
// Within one statement every row is deleted or given new keys once: cycles of cascades end.
#pragma once

#include <functional>
#include <set>
#include <span>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/table/EditedTable.h"

namespace tavrel::jet {

class RelationRules {
  public:
    /// `find` gives the table whose definition starts at a page.
    RelationRules(Catalog& catalog, std::function<EditedTable&(PageNumber)> find)
        : catalog_(catalog), find_(std::move(find)) {}

    RowPointer Insert(EditedTable& table, std::span<const Value> values);
    /// False when the row is there no more.
    bool Update(EditedTable& table, RowPointer at, std::span<const FieldChange> changes);
    bool Delete(EditedTable& table, RowPointer at);
    /// A statement begins: what was handled before counts no more.
    void Begin();

  private:
    using Link = const LogicalIndex*;
    struct Cascade {
        EditedTable* child;
        std::vector<RowPointer> rows;
        std::vector<FieldChange> changes;
    };
    struct PartnerIndex {
        EditedTable* table;
        const LogicalIndex* link;
    };

    [[nodiscard]] PartnerIndex Partner(const LogicalIndex& link);
    [[nodiscard]] static std::optional<RowKey> PartnerKey(const EditedTable& table, const LogicalIndex& link,
                                                          const PartnerIndex& partner,
                                                          const StoredFields& fields);
    void CheckParents(EditedTable& table, RowPointer at, const std::vector<bool>* changed);
    void Release(EditedTable& child, RowPointer row, const LogicalIndex& link);
    [[nodiscard]] bool DeletesSetNull(const std::string& relation) const;
    std::vector<Cascade> PlanUpdate(EditedTable& table, RowPointer at, std::span<const FieldChange> changes);

    Catalog& catalog_;
    std::function<EditedTable&(PageNumber)> find_;
    std::set<std::pair<PageNumber, RowPointer>> deleting_;
    std::set<std::pair<PageNumber, RowPointer>> updating_;
};

}  // namespace tavrel::jet
