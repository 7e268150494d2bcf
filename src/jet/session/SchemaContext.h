// What all definition changes share: finding a table, keeping its definition and properties, freeing its
// pages.
#pragma once

#include <string>

#include "jet/database/Database.h"
#include "jet/table/TableEdits.h"

namespace tavrel::jet {

/// A table whose definition is being changed.
struct ChangedTable {
    CatalogObject object;
    TableDefinition definition;
    PropertyBlob properties;
};

class SchemaContext {
  public:
    SchemaContext(Database& database, TableEdits& edits) : database_(database), edits_(edits) {}

    [[nodiscard]] Database& File() { return database_; }
    [[nodiscard]] Pager& Pages() { return edits_.Context().pager; }
    [[nodiscard]] PageAllocator& Allocator() { return edits_.Context().allocator; }
    [[nodiscard]] TableEdits& Edits() { return edits_; }
    [[nodiscard]] std::uint16_t SortOrder() const { return database_.Header().sortOrder; }

    /// A local table by name.  Throws `missing` (with the name) when there is none.
    ChangedTable Load(const std::string& name, std::int32_t missing);
    /// Writes the definition, its logical indexes in their order; what is known of tables is read anew
    /// afterwards.
    void Store(ChangedTable& table);
    /// Writes the property blob and the date of the change.
    void StoreProperties(const ChangedTable& table);

    /// A new map, on the page where the table's other maps are if that has room.
    RowPointer NewMap(const TableDefinition& table);
    /// Frees the pages that a map names, the map's own pages and its row.
    void FreeMapped(RowPointer map);
    /// Takes a map's row away, and its page when that was the last one there.
    void DropMap(RowPointer map);

    /// Builds a tree from all rows, in the pages it has.  Throws 3022, 3058, 3990.
    void BuildTree(const ChangedTable& table, RealIndex& index);
    /// A tree of its own for a new index.
    void GiveTree(const ChangedTable& table, RealIndex& index);

    /// Takes an object and its permissions out of the catalog.
    void DropObject(const CatalogObject& object);

  private:
    Database& database_;
    TableEdits& edits_;
};

/// Takes a logical index out of a definition, and its tree with it when no other name uses that.
void RemoveLogicalIndex(SchemaContext& context, TableDefinition& table, std::size_t which);

/// True when an index that belongs to a relation holds the column.
bool IsInRelation(const TableDefinition& table, std::uint16_t column);

}  // namespace tavrel::jet
