#include "jet/sql/statement/Execute.h"

#include "jet/sql/plan/CompileQuery.h"
#include "jet/sql/statement/ChangePlans.h"
#include "jet/sql/statement/Defaults.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

class StreamedRows : public ResultSet {
  public:
    StreamedRows(Workspace& workspace, const Query& query)
        : context_{workspace, 0, {}}, plan_(CompileQuery(context_, query, nullptr)) {
        context_.RequireAllNames();
    }
    const std::vector<ResultColumn>& Columns() const override { return plan_->columns; }
    bool Next() override {
        if (!open_) {
            plan_->Open();
            open_ = true;
        }
        ended_ = ended_ || !plan_->Next();
        return !ended_;
    }
    const Value& Get(std::size_t column) override { return plan_->Output(column); }

  private:
    Context context_;
    std::unique_ptr<QueryPlan> plan_;
    bool open_ = false;
    bool ended_ = false;
};

/// Everything between Begin and End, or nothing.
template <typename Work>
auto AsOneStatement(Transactions& transactions, Work work) {
    transactions.BeginStatement();
    try {
        auto result = work();
        transactions.EndStatement();
        return result;
    } catch (...) {
        transactions.UndoStatement();
        throw;
    }
}

class Executor {
  public:
    explicit Executor(Workspace& workspace) : workspace_(workspace) {}

    ExecuteResult operator()(const Query& query) const {
        return {std::make_unique<StreamedRows>(workspace_, query), 0};
    }
    ExecuteResult operator()(const InsertStatement& statement) const { return Change(PlanInsert, statement); }
    ExecuteResult operator()(const UpdateStatement& statement) const { return Change(PlanUpdate, statement); }
    ExecuteResult operator()(const DeleteStatement& statement) const { return Change(PlanDelete, statement); }

    ExecuteResult operator()(const CreateTableStatement& statement) const {
        for (const ColumnDefinition& column : statement.table.columns) {
            CheckDefault(column);
        }
        return Define([&](SchemaChanges& schema) { schema.CreateTable(statement.table); });
    }
    ExecuteResult operator()(const AddColumnStatement& statement) const {
        CheckDefault(statement.column);
        return Define([&](SchemaChanges& schema) {
            schema.AddColumn(statement.table, statement.column);
            AddConstraints(schema, statement.table, statement.constraints);
        });
    }
    ExecuteResult operator()(const AlterColumnStatement& statement) const {
        CheckDefault(statement.column);
        return Define([&](SchemaChanges& schema) {
            schema.AlterColumn(statement.table, statement.column);
            AddConstraints(schema, statement.table, statement.constraints);
        });
    }
    ExecuteResult operator()(const AddConstraintStatement& statement) const {
        return Define(
            [&](SchemaChanges& schema) { AddConstraints(schema, statement.table, statement.constraints); });
    }
    ExecuteResult operator()(const SetDefaultStatement& statement) const {
        CheckDefault(statement.text, statement.column);
        return Define([&](SchemaChanges& schema) {
            schema.SetDefault(statement.table, statement.column, statement.text);
        });
    }
    ExecuteResult operator()(const DropColumnStatement& statement) const {
        return Define([&](SchemaChanges& schema) { schema.DropColumn(statement.table, statement.column); });
    }
    ExecuteResult operator()(const DropConstraintStatement& statement) const {
        return Define([&](SchemaChanges& schema) { schema.DropConstraint(statement.table, statement.name); });
    }
    ExecuteResult operator()(const CreateIndexStatement& statement) const {
        return Define([&](SchemaChanges& schema) { schema.AddIndex(statement.table, statement.index); });
    }
    ExecuteResult operator()(const DropTableStatement& statement) const {
        return Define([&](SchemaChanges& schema) { schema.DropTable(statement.table); });
    }
    ExecuteResult operator()(const DropIndexStatement& statement) const {
        return Define([&](SchemaChanges& schema) { schema.DropIndex(statement.table, statement.name); });
    }
    ExecuteResult operator()(TransactionStatement statement) const {
        switch (statement) {
            case TransactionStatement::Begin:
                workspace_.transactions.Begin();
                break;
            case TransactionStatement::Commit:
                workspace_.transactions.Commit();
                break;
            case TransactionStatement::Rollback:
                workspace_.transactions.Rollback();
        }
        return {};
    }

  private:
    template <typename Plan, typename Statement>
    ExecuteResult Change(Plan plan, const Statement& statement) const {
        Context context{workspace_, 0, {}};
        const ChangePlanPtr change = plan(context, statement);
        context.RequireAllNames();
        return {nullptr, AsOneStatement(workspace_.transactions, [&change] { return change->Run(); })};
    }

    template <typename Work>
    ExecuteResult Define(Work work) const {
        AsOneStatement(workspace_.transactions, [&] {
            work(workspace_.schema);
            return 0;
        });
        return {};
    }

    static void AddConstraints(SchemaChanges& schema, const std::string& table,
                               const Constraints& constraints) {
        for (const NewIndex& index : constraints.indexes) {
            schema.AddIndex(table, index);
        }
        for (const ForeignKeyDefinition& key : constraints.foreignKeys) {
            schema.AddForeignKey(key);
        }
    }

    void CheckDefault(const ColumnDefinition& column) const {
        CheckDefault(column.column.defaultValue, column.column.name);
    }
    /// A default that means nothing is refused when it is declared, not when a row first needs it.
    void CheckDefault(const std::string& text, const std::string& column) const {
        if (!text.empty()) {
            Context context{workspace_, 0, {}};
            CompileDefault(context, text, column);
        }
    }

    Workspace& workspace_;
};

}  // namespace

ExecuteResult Execute(std::string_view statement, Workspace& workspace) {
    return std::visit(Executor(workspace), ParseStatement(statement));
}

}  // namespace tavrel::jet::sql
