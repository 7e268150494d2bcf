#include <algorithm>

#include "jet/sql/expression/Assignment.h"
#include "jet/sql/plan/Binder.h"
#include "jet/sql/plan/CompileQuery.h"
#include "jet/sql/statement/ChangePlans.h"
#include "jet/sql/statement/Defaults.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"

namespace tavrel::jet::sql {

namespace {

/// Places of the columns that values are given for.
std::vector<std::size_t> TargetsOf(const InsertStatement& statement, const TableAccess& table) {
    const std::vector<TableColumn>& columns = table.Columns();
    std::vector<std::size_t> targets;
    if (statement.columns.empty()) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            targets.push_back(i);
        }
        return targets;
    }
    for (const std::string& name : statement.columns) {
        const auto found = std::ranges::find_if(columns, [&name](const TableColumn& column) {
            return text::EqualIgnoringCase(column.name, name);
        });
        const auto place = static_cast<std::size_t>(found - columns.begin());
        if (found == columns.end()) {
            throw MakeError(sqlErrors::kUnknownInsertField, {name});
        }
        if (std::ranges::find(targets, place) != targets.end()) {
            throw MakeError(sqlErrors::kInInsert, {}, name);
        }
        targets.push_back(place);
    }
    return targets;
}

class InsertPlan : public ChangePlan {
  public:
    InsertPlan(Context& context, const InsertStatement& statement)
        : context_(context), table_(context.workspace.tables.Find(statement.table)) {
        if (table_ == nullptr) {
            throw MakeError(sqlErrors::kNoOutputTable, {statement.table});
        }
        targets_ = TargetsOf(statement, *table_);
        if (statement.query != nullptr) {
            query_ = CompileQuery(context, *statement.query, nullptr);
        }
        Binder binder(context, scope_);
        for (const ExpressionPtr& value : statement.values) {
            values_.push_back(binder.Bind(*value));
        }
        if (targets_.size() != (query_ != nullptr ? query_->columns.size() : values_.size())) {
            throw MakeError(sqlErrors::kValueCount);
        }
        CompileDefaults();
    }

    std::int64_t Run() override {
        row_.resize(table_->Columns().size());
        return query_ != nullptr ? InsertQuery() : InsertValues();
    }

  private:
    struct Default {
        std::size_t column;
        NodePtr node;  ///< null: Null
    };

    void CompileDefaults() {
        const std::vector<TableColumn>& columns = table_->Columns();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (std::ranges::find(targets_, i) != targets_.end()) {
                continue;
            }
            const std::string& text = columns[i].defaultValue;
            defaults_.push_back(
                {i, text.empty() ? nullptr : CompileDefault(context_, text, columns[i].name)});
        }
    }

    void FillDefaults() {
        for (const Default& part : defaults_) {
            ConvertFor(table_->Columns()[part.column],
                       part.node == nullptr ? kNullValue : part.node->Evaluate(), row_[part.column]);
        }
    }

    void CheckRow() const {
        for (std::size_t i = 0; i < row_.size(); ++i) {
            CheckRules(table_->Name(), table_->Columns()[i], row_[i]);
        }
    }

    std::int64_t InsertValues() {
        for (std::size_t i = 0; i < targets_.size(); ++i) {
            ConvertFor(table_->Columns()[targets_[i]], values_[i]->Evaluate(), row_[targets_[i]]);
        }
        FillDefaults();
        CheckRow();
        const auto changes = context_.workspace.tables.Change(*table_, {});
        const auto identity = changes->InsertRow(row_);
        changes->Finish();
        NoteIdentity(identity);
        return 1;
    }

    /// All rows are read before the first one is written: the query may read the table that it fills.
    std::int64_t InsertQuery() {
        std::vector<std::vector<Value>> rows;
        for (query_->Open(); query_->Next();) {
            for (std::size_t i = 0; i < targets_.size(); ++i) {
                ConvertFor(table_->Columns()[targets_[i]], query_->Output(i), row_[targets_[i]]);
            }
            FillDefaults();
            CheckRow();
            rows.push_back(row_);
        }
        const auto changes = context_.workspace.tables.Change(*table_, {});
        std::optional<std::int32_t> identity;
        for (const std::vector<Value>& row : rows) {
            identity = changes->InsertRow(row);
        }
        changes->Finish();
        NoteIdentity(identity);
        return static_cast<std::int64_t>(rows.size());
    }

    void NoteIdentity(std::optional<std::int32_t> identity) {
        if (identity) {
            context_.workspace.identity = identity;
        }
    }

    Context& context_;
    std::shared_ptr<TableAccess> table_;
    Scope scope_;
    std::vector<std::size_t> targets_;
    NodeList values_;  ///< or
    std::unique_ptr<QueryPlan> query_;
    std::vector<Default> defaults_;
    std::vector<Value> row_;
};

}  // namespace

ChangePlanPtr PlanInsert(Context& context, const InsertStatement& statement) {
    return std::make_unique<InsertPlan>(context, statement);
}

}  // namespace tavrel::jet::sql
