// Tables in memory behind the interfaces that statements work through: SQL is tested without a file. Whatever
// is read is counted, definitions are written down as one line each.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "jet/sql/statement/Execute.h"
#include "jet/sql/statement/TableChanges.h"
#include "jet/sql/values/TextComparer.h"

namespace tavrel::test {

struct MemoryTable : public jet::sql::TableAccess {
    using Row = std::vector<jet::Value>;

    [[nodiscard]] const std::string& Name() const override { return name; }
    [[nodiscard]] const std::vector<jet::sql::TableColumn>& Columns() const override { return columns; }
    [[nodiscard]] const std::vector<jet::sql::TableIndex>& Indexes() const override { return indexes; }
    [[nodiscard]] std::uint64_t RowCount() const override;
    [[nodiscard]] std::uint64_t RowEstimate() const override { return claimedRows.value_or(RowCount()); }
    std::unique_ptr<jet::sql::RowReader> Scan(std::span<const std::size_t> wanted) override;
    std::unique_ptr<jet::sql::IndexCursor> OpenIndex(std::size_t index,
                                                     std::span<const std::size_t> wanted) override;
    [[nodiscard]] bool ScanToleratesChanges() const override { return toleratesChanges; }
    [[nodiscard]] std::size_t ColumnPlace(std::string_view column) const;

    std::string name;
    std::vector<jet::sql::TableColumn> columns;
    std::vector<jet::sql::TableIndex> indexes;
    std::vector<std::optional<Row>> rows;  ///< a row's id is its place; nothing = deleted
    std::int32_t nextNumber = 1;
    bool toleratesChanges = true;
    std::optional<std::uint64_t> claimedRows;  ///< what plans are made for, in place of the true count
    bool refusesSeeks = false;                 ///< as if every key held a character without weight
    const jet::sql::TextComparer* texts = nullptr;
    std::size_t scans = 0, seeks = 0, rowsRead = 0;
};

class MemoryDatabase : public jet::sql::Tables,
                       public jet::sql::SchemaChanges,
                       public jet::sql::Transactions {
  public:
    MemoryDatabase();

    /// Throws what the statement throws.  Rows of a query come as a|b;c|d, Null as ~.
    std::string Run(std::string_view statement);
    /// Rows affected, or the number of the error below zero.
    std::int64_t Affect(std::string_view statement);
    /// The number of the error that a statement raises, its rows read; 0 for none.
    std::int32_t Failure(std::string_view statement);
    MemoryTable& Table(std::string_view name);
    void ForgetCounts();

    std::shared_ptr<jet::sql::TableAccess> Find(std::string_view name) override;
    std::unique_ptr<jet::sql::TableChanges> Change(jet::sql::TableAccess& table,
                                                   std::span<const std::size_t> updated) override;

    void CreateTable(const jet::sql::TableCreation& table) override;
    void AddColumn(const std::string& table, const jet::sql::ColumnDefinition& column) override;
    void AlterColumn(const std::string& table, const jet::sql::ColumnDefinition& column) override;
    void SetDefault(const std::string& table, const std::string& column, const std::string& text) override;
    void DropColumn(const std::string& table, const std::string& column) override;
    void AddIndex(const std::string& table, const jet::NewIndex& index) override;
    void AddForeignKey(const jet::sql::ForeignKeyDefinition& key) override;
    void DropConstraint(const std::string& table, const std::string& name) override;
    void DropIndex(const std::string& table, const std::string& name) override;
    void DropTable(const std::string& table) override;

    void Begin() override { log += "begin;"; }
    void Commit() override { log += "commit;"; }
    void Rollback() override { log += "rollback;"; }
    void BeginStatement() override;
    void EndStatement() override { saved_.clear(); }
    void UndoStatement() noexcept override;

    jet::sql::TextComparer texts;
    jet::sql::Workspace workspace;
    std::string log;  ///< what was defined, one ; behind each

  private:
    using TableMap = std::map<std::string, std::shared_ptr<MemoryTable>>;
    TableMap tables_;  ///< by upper-case name
    TableMap saved_;
};

/// A value as Run shows it.
std::string Shown(const jet::Value& value);
/// A statement as the name of a case: what test runners may trip over is left out.
std::string Words(std::string statement);

}  // namespace tavrel::test
