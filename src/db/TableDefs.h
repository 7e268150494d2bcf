// A database's table definitions as DAO shows them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavrel::jet {
class Database;
struct CatalogObject;
}  // namespace tavrel::jet

namespace tavrel::db {

/// One field of a table.
struct Field {
    std::string Name;
    std::int16_t Type = 0;     ///< DAO type code: 1 Boolean … 10 Text, 12 Memo, 20 Decimal
    std::int32_t Size = 0;     ///< Text: characters
    std::string DefaultValue;  ///< expression text; empty when none
    bool Required = false;
    bool AllowZeroLength = false;
};

struct IndexField {
    std::string Name;
};

/// One index of a table.  An index that a relation brought to its child table is Foreign.
struct Index {
    std::string Name;
    bool Primary = false;
    bool Foreign = false;
    std::vector<IndexField> Fields;
};

class Database;

/// One table: local, system or linked.  Its structure is read when Fields or Indexes is first asked for; a
/// linked table has neither.  Must not be used after its database was closed.
class TableDef {
  public:
    TableDef(Database& database, const jet::CatalogObject& object);

    [[nodiscard]] const std::string& Name() const { return name_; }
    /// In ordinal order.  Throws Error when the definition cannot be read or the database is closed.
    const std::vector<Field>& Fields();
    const std::vector<Index>& Indexes();

  private:
    struct Structure {
        std::vector<Field> fields;
        std::vector<Index> indexes;
    };
    const Structure& Read();

    Database* database_;
    const jet::CatalogObject* object_;  ///< null for a linked table
    std::string name_;
    std::optional<Structure> structure_;
};

/// Every table, ascending by name, letter case ignored.
class TableDefs {
  public:
    TableDefs() = default;
    explicit TableDefs(std::vector<TableDef> tables) : tables_(std::move(tables)) {}

    [[nodiscard]] int Count() const { return static_cast<int>(tables_.size()); }
    auto begin() { return tables_.begin(); }
    auto end() { return tables_.end(); }

  private:
    std::vector<TableDef> tables_;
};

}  // namespace tavrel::db
