#include <algorithm>

#include "jet/sql/expression/Assignment.h"
#include "jet/sql/plan/CompileCore.h"
#include "jet/sql/plan/Planner.h"
#include "jet/sql/statement/ChangePlans.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

RowStreamPtr PlanRows(Binder& binder, const TableReference& table, const ExpressionPtr& where,
                      bool& usesIndex) {
    std::vector<Conjunct> conditions;
    if (where != nullptr) {
        AppendConjuncts(binder, *where, errors::kTypeMismatch, conditions);
    }
    Planner planner(binder);
    RowStreamPtr rows = planner.Plan({&table, 1}, std::move(conditions));
    usesIndex = planner.UsesIndex();
    return rows;
}

class UpdatePlan : public ChangePlan {
  public:
    UpdatePlan(Context& context, const UpdateStatement& statement) : context_(context) {
        AddSources(context, statement.table, scope_);
        Binder binder(context, scope_);
        bool usesIndex = false;
        rows_ = PlanRows(binder, statement.table, statement.where, usesIndex);
        bool holdsQuery = statement.where != nullptr && statement.where->holdsQuery;
        for (const Assignment& assignment : statement.assignments) {
            AddAssignment(binder, assignment);
            holdsQuery |= assignment.value->holdsQuery;
        }
        std::ranges::sort(assignments_, {}, &Bound::column);
        if (std::ranges::adjacent_find(assignments_, {}, &Bound::column) != assignments_.end()) {
            throw MakeError(sqlErrors::kInUpdate);
        }
        if (source_ == nullptr) {
            return;  // names are missing, which the caller reports
        }
        id_ = &source_->RowIdCell();
        whileReading_ = scope_.sources.size() == 1 && !usesIndex && !holdsQuery &&
                        source_->Table()->ScanToleratesChanges();
    }

    std::int64_t Run() override {
        std::vector<std::size_t> columns;
        std::ranges::transform(assignments_, std::back_inserter(columns), &Bound::column);
        changes_ = context_.workspace.tables.Change(*source_->Table(), columns);
        values_.resize(columns.size());
        const std::int64_t count = whileReading_ ? UpdateWhileReading() : ReadThenUpdate();
        changes_->Finish();
        return count;
    }

  private:
    struct Bound {
        std::size_t column;
        NodePtr value;
    };

    void AddAssignment(Binder& binder, const Assignment& assignment) {
        NodePtr value = binder.Bind(*assignment.value);
        const FoundColumn target = binder.ColumnOf(*assignment.target);
        if (target.scope == nullptr) {
            context_.NoteMissing(assignment.target->source);
            return;
        }
        Source& source = *scope_.sources[target.source];
        if (source.Table() == nullptr || (source_ != nullptr && source_ != &source)) {
            throw MakeError(sqlErrors::kNotUpdateableQuery);
        }
        const TableColumn& column = source.Table()->Columns()[target.column];
        if (column.autonumber) {
            throw MakeError(sqlErrors::kNotUpdateable, {column.name});
        }
        source_ = &source;
        assignments_.push_back({target.column, std::move(value)});
    }

    /// The new values of the present row, of its columns' types.
    void Evaluate() {
        const std::vector<TableColumn>& columns = source_->Table()->Columns();
        for (std::size_t i = 0; i < assignments_.size(); ++i) {
            ConvertFor(columns[assignments_[i].column], assignments_[i].value->Evaluate(), values_[i]);
        }
        for (std::size_t i = 0; i < assignments_.size(); ++i) {
            CheckRules(source_->Table()->Name(), columns[assignments_[i].column], values_[i]);
        }
    }

    /// False for the missing side of an outer join.
    bool HasRow(RowId& row) {
        const Value& id = id_->Get();
        if (IsNull(id)) {
            return false;
        }
        row = static_cast<RowId>(std::get<std::int64_t>(id));
        return true;
    }

    std::int64_t UpdateWhileReading() {
        std::int64_t count = 0;
        RowId row = 0;
        for (rows_->Open(); rows_->Next();) {
            Evaluate();
            count += HasRow(row) && changes_->UpdateRow(row, values_) ? 1 : 0;
        }
        return count;
    }

    std::int64_t ReadThenUpdate() {
        std::vector<RowId> ids;
        std::vector<Value> all;
        RowId row = 0;
        for (rows_->Open(); rows_->Next();) {
            if (HasRow(row)) {
                Evaluate();
                ids.push_back(row);
                all.insert(all.end(), values_.begin(), values_.end());
            }
        }
        std::int64_t count = 0;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const std::span<const Value> values(all.data() + i * values_.size(), values_.size());
            count += changes_->UpdateRow(ids[i], values) ? 1 : 0;
        }
        return count;
    }

    Context& context_;
    Scope scope_;
    RowStreamPtr rows_;
    std::vector<Bound> assignments_;  ///< by column
    Source* source_ = nullptr;
    Cell* id_ = nullptr;
    bool whileReading_ = false;
    std::unique_ptr<TableChanges> changes_;
    std::vector<Value> values_;
};

class DeletePlan : public ChangePlan {
  public:
    DeletePlan(Context& context, const DeleteStatement& statement) : context_(context) {
        TableReference table;
        table.name = statement.table;
        table.alias = statement.alias;
        AddSources(context, table, scope_);
        Binder binder(context, scope_);
        bool usesIndex = false;
        rows_ = PlanRows(binder, table, statement.where, usesIndex);
        id_ = &scope_.sources[0]->RowIdCell();
        const bool holdsQuery = statement.where != nullptr && statement.where->holdsQuery;
        whileReading_ = !usesIndex && !holdsQuery && scope_.sources[0]->Table()->ScanToleratesChanges();
    }

    std::int64_t Run() override {
        const auto changes = context_.workspace.tables.Change(*scope_.sources[0]->Table(), {});
        std::int64_t count = 0;
        std::vector<RowId> ids;
        for (rows_->Open(); rows_->Next();) {
            const auto row = static_cast<RowId>(std::get<std::int64_t>(id_->Get()));
            if (whileReading_) {
                count += changes->DeleteRow(row) ? 1 : 0;
            } else {
                ids.push_back(row);
            }
        }
        for (const RowId row : ids) {
            count += changes->DeleteRow(row) ? 1 : 0;
        }
        changes->Finish();
        return count;
    }

  private:
    Context& context_;
    Scope scope_;
    RowStreamPtr rows_;
    Cell* id_ = nullptr;
    bool whileReading_ = false;
};

}  // namespace

ChangePlanPtr PlanUpdate(Context& context, const UpdateStatement& statement) {
    return std::make_unique<UpdatePlan>(context, statement);
}

ChangePlanPtr PlanDelete(Context& context, const DeleteStatement& statement) {
    return std::make_unique<DeletePlan>(context, statement);
}

}  // namespace tavrel::jet::sql
