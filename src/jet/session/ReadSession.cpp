#include "jet/session/ReadSession.h"

#include "jet/session/SessionTable.h"
#include "jet/sql/statement/TableChanges.h"
#include "jet/sql/values/TextComparer.h"

namespace tavrel::jet {

namespace {

[[noreturn]] void RefuseChange() {
    throw MakeError(errors::kReadOnly);
}

/// The definitions of a database that is open for reading.
class NoSchemaChanges : public sql::SchemaChanges {
    using Text = std::string;
    void CreateTable(const sql::TableCreation& /*table*/) override { RefuseChange(); }
    void AddColumn(const Text& /*table*/, const sql::ColumnDefinition& /*column*/) override {
        RefuseChange();
    }
    void AlterColumn(const Text& /*table*/, const sql::ColumnDefinition& /*column*/) override {
        RefuseChange();
    }
    void SetDefault(const Text& /*table*/, const Text& /*column*/, const Text& /*text*/) override {
        RefuseChange();
    }
    void DropColumn(const Text& /*table*/, const Text& /*column*/) override { RefuseChange(); }
    void AddIndex(const Text& /*table*/, const NewIndex& /*index*/) override { RefuseChange(); }
    void AddForeignKey(const sql::ForeignKeyDefinition& /*key*/) override { RefuseChange(); }
    void DropConstraint(const Text& /*table*/, const Text& /*name*/) override { RefuseChange(); }
    void DropIndex(const Text& /*table*/, const Text& /*name*/) override { RefuseChange(); }
    void DropTable(const Text& /*table*/) override { RefuseChange(); }
};

/// Transactions over a database that cannot change: there is nothing to keep or to undo.
class NoTransactions : public sql::Transactions {
  public:
    [[nodiscard]] unsigned Depth() const { return depth_; }

  private:
    static constexpr unsigned kMost = 5;  // as many as a session that changes something takes

    void Begin() override {
        if (depth_ == kMost) {
            throw MakeError(errors::kTooManyTransactions);
        }
        ++depth_;
    }
    void Commit() override { End(); }
    void Rollback() override { End(); }
    void BeginStatement() override {}
    void EndStatement() override {}
    void UndoStatement() noexcept override {}

    void End() {
        if (depth_ == 0) {
            throw MakeError(errors::kNoTransaction);
        }
        --depth_;
    }
    unsigned depth_ = 0;
};

class OpenForQueries : public ReadSession, private sql::Tables {
  public:
    explicit OpenForQueries(std::unique_ptr<Database> database)
        : database_(std::move(database)), texts_(database_->Header().sortOrder) {}

    sql::ExecuteResult Execute(std::string_view statement) override {
        return sql::Execute(statement, workspace_);
    }
    [[nodiscard]] unsigned TransactionDepth() const override { return transactions_.Depth(); }

  private:
    std::shared_ptr<sql::TableAccess> Find(std::string_view name) override {
        const CatalogObject* object = database_->Catalog().FindTable(name);
        return object == nullptr ? nullptr : std::make_shared<SessionTable>(*database_, *object);
    }
    std::unique_ptr<sql::TableChanges> Change(sql::TableAccess& /*table*/,
                                              std::span<const std::size_t> /*updated*/) override {
        RefuseChange();
    }

    std::unique_ptr<Database> database_;
    sql::TextComparer texts_;
    NoSchemaChanges schema_;
    NoTransactions transactions_;
    sql::Workspace workspace_{.tables = *this,
                              .schema = schema_,
                              .transactions = transactions_,
                              .texts = texts_,
                              .now = {},
                              .identity = {}};
};

}  // namespace

std::unique_ptr<ReadSession> ReadSession::Open(const std::string& path, const OpenOptions& options) {
    return std::make_unique<OpenForQueries>(Database::Open(path, options));
}

}  // namespace tavrel::jet
