// What becomes of the objects of a damaged database: which tables there are, and what the system tables say
// in the end.
#pragma once

#include <map>
#include <set>

#include "jet/catalog/Catalog.h"
#include "jet/compact/RelationSalvage.h"
#include "jet/compact/TableCopy.h"
#include "jet/compact/TableSalvage.h"
#include "jet/storage/FileHeader.h"

namespace tavrel::jet::compact {

class CatalogSalvage {
  public:
    CatalogSalvage(SourcePages& source, const SourceSurvey& survey, const FileHeader& header,
                   std::vector<TableDefinition> systemTables, LossLog& losses);

    /// The tables that can be made; relations that are not whole are taken out of them.
    [[nodiscard]] std::vector<SourceTable> Tables();
    /// True when the system tables cannot stay as they are.
    [[nodiscard]] bool Changed() const { return changed_; }
    /// How the rows of the engine table at a place change.  `ids`: new numbers.
    [[nodiscard]] SalvageRules RulesFor(std::size_t place, const ObjectIds& ids);

  private:
    struct Object {
        std::int32_t id = 0;
        std::int32_t parentId = 0;
        std::string name;
        std::int16_t type = 0;
    };

    void ReadObjects();
    void FindNamelessTables();
    void ReadAces();
    void SettleRelations(std::vector<SourceTable>& tables);
    [[nodiscard]] std::vector<RelationRow> ReadRelationRows();
    bool KeepObject(StoredFields& fields, const ObjectIds& ids, bool tell);
    [[nodiscard]] std::vector<StoredFields> MissingObjects(const ObjectIds& ids) const;
    [[nodiscard]] std::vector<StoredFields> MissingAces(const ObjectIds& ids) const;
    [[nodiscard]] StoredFields Encode(std::size_t place,
                                      std::initializer_list<std::pair<std::string_view, Value>> values) const;
    [[nodiscard]] Value Get(std::size_t place, const StoredFields& fields, std::string_view column) const;
    [[nodiscard]] std::int32_t Number(std::size_t place, const StoredFields& fields,
                                      std::string_view column) const;
    [[nodiscard]] std::string Text(std::size_t place, const StoredFields& fields,
                                   std::string_view column) const;
    void PutNumber(std::size_t place, StoredFields& fields, std::string_view column,
                   std::int32_t value) const;

    SourcePages& source_;
    const SourceSurvey& survey_;
    const FileHeader& header_;
    std::vector<TableDefinition> systemTables_;
    LossLog& losses_;
    std::vector<Object> objects_;
    std::vector<Object> nameless_;  ///< tables whose objects are lost; they are among objects_, too
    std::set<std::int32_t> kept_;   ///< ids of the objects that stay
    std::set<std::int32_t> withAces_;
    std::set<std::string> brokenRelations_;  ///< lower-case names
    std::set<std::int32_t> seenIds_;
    std::set<std::pair<std::int32_t, std::string>> seenNames_;
    bool changed_ = false;
};

}  // namespace tavrel::jet::compact
