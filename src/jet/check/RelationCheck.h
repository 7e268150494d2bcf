// MSysRelationships against the objects, tables and index entries that belong to each relation.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "jet/check/CatalogCheck.h"

namespace tavrel::jet::check {

class RelationCheck {
  public:
    RelationCheck(Context& context, const std::vector<CatalogObject>& objects,
                  const std::vector<CheckedTable>& tables);
    void Run();

  private:
    struct Side {
        std::string table;
        const TableDefinition* definition = nullptr;  ///< null: a linked table, or missing
    };

    void ReadRows();
    void CheckObjects();
    void CheckRelation(const std::string& name, std::vector<RelationRow>& rows);
    Side FindSide(const std::string& where, const std::string& table);
    void CheckColumn(const std::string& where, const Side& side, const std::string& column);
    void CheckEntries(const std::string& where, const RelationRow& relation, const Side& child,
                      const Side& parent, const std::vector<RelationRow>& rows);
    void CheckIndexes(const std::string& where, const TableDefinition& child, const LogicalIndex& childEntry,
                      const TableDefinition& parent, const LogicalIndex& parentEntry,
                      const std::vector<RelationRow>& rows);
    void CheckOrphans();

    Context& context_;
    FindingLog& log_;
    const std::vector<CatalogObject>& objects_;
    const std::vector<CheckedTable>& tables_;
    std::map<std::string, const TableDefinition*> byName_;  ///< by lower-case name
    std::set<std::string> linked_;  ///< lower-case names of tables elsewhere and queries
    std::map<std::string, std::vector<RelationRow>> relations_;
    std::set<std::pair<PageNumber, std::uint32_t>> used_;  ///< index entries that belong to a relation
};

}  // namespace tavrel::jet::check
