#include "db/StatementRunner.h"

#include "jet/session/EditSession.h"
#include "jet/session/SessionTable.h"
#include "jet/sql/statement/TableChanges.h"
#include "jet/sql/values/TextComparer.h"

namespace tavrel::db {

namespace {

using namespace jet;

OpenOptions OptionsOf(const ConnectionSettings& settings) {
    return {.password = settings.password};
}

class ChangingRunner : public StatementRunner {
  public:
    explicit ChangingRunner(std::unique_ptr<EditSession> session) : session_(std::move(session)) {}
    sql::ExecuteResult Execute(std::string_view statement) override { return session_->Execute(statement); }
    [[nodiscard]] unsigned TransactionDepth() const override { return session_->TransactionDepth(); }

  private:
    std::unique_ptr<EditSession> session_;
};

[[noreturn]] void Refuse() {
    throw MakeError(errors::kReadOnly);
}

/// The definitions of a database that is open for reading.
class NoSchemaChanges : public sql::SchemaChanges {
    using Text = std::string;
    void CreateTable(const sql::TableCreation& /*table*/) override { Refuse(); }
    void AddColumn(const Text& /*table*/, const sql::ColumnDefinition& /*column*/) override { Refuse(); }
    void AlterColumn(const Text& /*table*/, const sql::ColumnDefinition& /*column*/) override { Refuse(); }
    void SetDefault(const Text& /*table*/, const Text& /*column*/, const Text& /*text*/) override {
        Refuse();
    }
    void DropColumn(const Text& /*table*/, const Text& /*column*/) override { Refuse(); }
    void AddIndex(const Text& /*table*/, const IndexSpec& /*index*/) override { Refuse(); }
    void AddForeignKey(const sql::ForeignKeyDefinition& /*key*/) override { Refuse(); }
    void DropConstraint(const Text& /*table*/, const Text& /*name*/) override { Refuse(); }
    void DropIndex(const Text& /*table*/, const Text& /*name*/) override { Refuse(); }
    void DropTable(const Text& /*table*/) override { Refuse(); }
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

class ReadingRunner : public StatementRunner, private sql::Tables {
  public:
    explicit ReadingRunner(std::unique_ptr<jet::Database> database)
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
        Refuse();
    }

    std::unique_ptr<jet::Database> database_;
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

std::unique_ptr<StatementRunner> OpenForChanges(const ConnectionSettings& settings,
                                                const ChangeOptions& options) {
    return std::make_unique<ChangingRunner>(EditSession::Open(
        settings.dataSource, OptionsOf(settings),
        options.onMedium ? EditSession::Durability::OnMedium : EditSession::Durability::WrittenOut,
        options.standIns ? UnknownWeights::StandIn : UnknownWeights::Refuse));
}

std::unique_ptr<StatementRunner> OpenForReading(const ConnectionSettings& settings) {
    return std::make_unique<ReadingRunner>(jet::Database::Open(settings.dataSource, OptionsOf(settings)));
}

}  // namespace tavrel::db
