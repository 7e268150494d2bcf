// Which relations of a damaged database stay.  A relation is whole when its rows, its object and the index
// entries of both tables say the same; of one that is not, nothing stays, and that is told.
#pragma once

#include <map>
#include <set>

#include "jet/catalog/Catalog.h"
#include "jet/compact/SourceSurvey.h"

namespace tavrel::jet::compact {

/// One table of the new database.
struct SourceTable {
    std::string name;
    TableDefinition definition;  ///< as repaired
    bool intact = true;          ///< the definition is that of the file
};

/// What a database says of its relations, but for the tables' own index entries.
struct RelationNames {
    std::set<std::string> objects;    ///< lower-case names of the relations' objects
    std::set<std::string> elsewhere;  ///< lower-case names of linked tables and queries

    void Add(ObjectType type, const std::string& name);
};

class RelationSalvage {
  public:
    /// `tables` outlive this.
    RelationSalvage(std::vector<SourceTable>& tables, LossLog& losses);

    /// Takes entries that belong to no whole relation out of the tables.  True when all were whole.
    bool Settle(const std::vector<RelationRow>& rows, const RelationNames& names);
    /// Lower-case names of the relations that do not stay.
    [[nodiscard]] const std::set<std::string>& Broken() const { return broken_; }

  private:
    using EntryPlace = std::pair<PageNumber, std::uint32_t>;

    [[nodiscard]] TableDefinition* Find(const std::string& table);
    [[nodiscard]] bool HasColumn(const std::string& table, const std::string& column,
                                 const RelationNames& names);
    [[nodiscard]] bool IsWhole(std::vector<RelationRow>& rows, const RelationNames& names);
    [[nodiscard]] bool HasEntries(const std::vector<RelationRow>& rows);
    void Break(const std::string& relation, const std::string& why);
    void DropOtherEntries();

    std::vector<SourceTable>& tables_;
    LossLog& losses_;
    std::map<std::string, SourceTable*> byName_;  ///< by lower-case name
    std::set<std::string> broken_;
    std::set<EntryPlace> used_;  ///< entries of relations that stay
};

}  // namespace tavrel::jet::compact
