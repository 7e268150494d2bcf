// A table as statements see it.
#pragma once

#include "jet/catalog/RowCursor.h"
#include "jet/database/Database.h"
#include "jet/sql/expression/TableAccess.h"

namespace tavrel::jet {

/// A row's slot as the number that the executor knows it by, and back.
inline sql::RowId RowIdOf(RowPointer at) {
    return std::uint64_t{at.page} << 8 | at.row;
}
inline RowPointer PointerOf(sql::RowId id) {
    return {static_cast<PageNumber>(id >> 8), static_cast<std::uint8_t>(id)};
}

class SessionTable : public sql::TableAccess {
  public:
    /// `database` must outlive the table and its readers.
    SessionTable(Database& database, const CatalogObject& object);

    [[nodiscard]] const std::string& Name() const override { return name_; }
    [[nodiscard]] const std::vector<sql::TableColumn>& Columns() const override { return columns_; }
    [[nodiscard]] const std::vector<sql::TableIndex>& Indexes() const override { return indexes_; }
    [[nodiscard]] std::uint64_t RowCount() const override;
    [[nodiscard]] std::uint64_t RowEstimate() const override;
    std::unique_ptr<sql::RowReader> Scan(std::span<const std::size_t> columns) override;
    std::unique_ptr<sql::IndexCursor> OpenIndex(std::size_t index,
                                                std::span<const std::size_t> columns) override;
    /// A row that grows keeps its slot, and pages that others leave are not met by a scan that has not come
    /// to them; only a relation of the table with itself changes rows ahead.
    [[nodiscard]] bool ScanToleratesChanges() const override;

    [[nodiscard]] const TableDefinition& Definition() const { return definition_; }
    /// Place in the definition's columns of a column in the order that users see.
    [[nodiscard]] std::size_t PlaceOf(std::size_t column) const { return order_[column]; }
    [[nodiscard]] const std::vector<std::size_t>& Places() const { return order_; }

  private:
    void AddIndex(const LogicalIndex& logical);

    Database& database_;
    std::string name_;
    TableDefinition definition_;
    std::vector<std::size_t> order_;
    std::vector<sql::TableColumn> columns_;
    std::vector<sql::TableIndex> indexes_;
    std::vector<std::size_t> reals_;  ///< the tree of each of indexes_
};

}  // namespace tavrel::jet
