// MSysObjects and MSysRelationships: what the database holds.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "jet/catalog/Properties.h"
#include "jet/catalog/TableDefinition.h"
#include "jet/catalog/Value.h"

namespace tavrel::jet {

inline constexpr PageNumber kObjectsPage = 2;
inline constexpr PageNumber kAcesPage = 3;
inline constexpr PageNumber kQueriesPage = 4;
inline constexpr PageNumber kRelationshipsPage = 5;

inline constexpr std::int32_t kTablesContainer = 0x0F000001;
inline constexpr std::int32_t kDatabasesContainer = 0x0F000002;
inline constexpr std::int32_t kRelationshipsContainer = 0x0F000003;
inline constexpr std::int32_t kRootContainer = 0x0F000000;

enum class ObjectType : std::int16_t {
    Table = 1,
    Database = 2,
    Container = 3,
    LinkedOdbc = 4,
    Query = 5,
    LinkedTable = 6,
    Relation = 8
};

namespace relationFlags {
inline constexpr std::uint32_t kOneToOne = 0x1;
inline constexpr std::uint32_t kNotEnforced = 0x2;
inline constexpr std::uint32_t kCascadeUpdates = 0x100;
inline constexpr std::uint32_t kCascadeDeletes = 0x1000;
inline constexpr std::uint32_t kDeletesSetNull = 0x2000;
}  // namespace relationFlags

/// A row of MSysObjects.
struct CatalogObject {
    std::int32_t id = 0;
    std::int32_t parentId = 0;
    std::string name;
    std::int16_t type = 0;
    std::uint32_t flags = 0;
    ByteVector owner;       ///< deciphered
    ByteVector properties;  ///< descriptor of LvProp as stored in the row; empty = null
    RowPointer at{};

    [[nodiscard]] bool IsTable() const { return type == static_cast<std::int16_t>(ObjectType::Table); }
    [[nodiscard]] bool IsLinked() const {
        return type == static_cast<std::int16_t>(ObjectType::LinkedTable) ||
               type == static_cast<std::int16_t>(ObjectType::LinkedOdbc);
    }
    /// System table in DAO's sense.
    [[nodiscard]] bool IsSystem() const { return (flags & 0x80000002U) != 0; }
    [[nodiscard]] PageNumber DefinitionPage() const { return static_cast<PageNumber>(id) & 0xFFFFFF; }
};

/// A row of MSysRelationships.
struct RelationRow {
    std::string name;
    std::uint32_t grbit = 0;
    std::int32_t columnCount = 0;
    std::int32_t column = 0;
    std::string childTable, childColumn, parentTable, parentColumn;
};

class Catalog {
  public:
    Catalog(Pager& pager, std::uint32_t ownerKey) : pager_(pager), ownerKey_(ownerKey) {}

    /// Every object, in storage order; read once and kept until Forget.
    const std::vector<CatalogObject>& Objects();
    /// A local table by name (letter case ignored), or null.
    const CatalogObject* FindTable(std::string_view name);
    /// A table's definition; read once and kept until Forget.
    const TableDefinition& Definition(PageNumber page);
    PropertyBlob Properties(const CatalogObject& object);
    std::vector<RelationRow> RelationRows();
    [[nodiscard]] std::uint32_t OwnerKey() const { return ownerKey_; }

    /// Drops what was read: the file has changed.
    void Forget();
    /// Another number after each Forget.
    [[nodiscard]] std::uint64_t Edition() const { return edition_; }

  private:
    Pager& pager_;
    std::uint32_t ownerKey_;
    std::uint64_t edition_ = 0;
    bool haveObjects_ = false;
    std::vector<CatalogObject> objects_;
    std::unordered_map<std::string, std::size_t> tablesByName_;  ///< upper-case name to place in objects_
    std::unordered_map<PageNumber, std::unique_ptr<TableDefinition>> definitions_;
};

}  // namespace tavrel::jet
