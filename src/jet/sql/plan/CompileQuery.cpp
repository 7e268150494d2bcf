#include "jet/sql/plan/CompileQuery.h"

#include "jet/sql/plan/CompileCore.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

class Plan : public QueryPlan {
  public:
    void Open() override { stage_->Open(); }
    bool Next() override { return stage_->Next(); }
    const Value& Output(std::size_t column) override { return stage_->Output(column); }

    void Keep(std::unique_ptr<CompiledCore> core) { cores_.push_back(std::move(core)); }
    void SetStage(OutputStagePtr stage) { stage_ = std::move(stage); }

  private:
    std::vector<std::unique_ptr<CompiledCore>> cores_;  ///< scopes and groups that the stages speak of
    OutputStagePtr stage_;
};

/// Columns and types that the parts of a UNION have in common.  Returns which columns must become texts.
std::vector<bool> Unite(Plan& plan, const CompiledCore& part) {
    if (part.columns.size() != plan.columns.size()) {
        throw MakeError(sqlErrors::kUnionColumns);
    }
    std::vector<bool> asText;
    for (std::size_t i = 0; i < plan.columns.size(); ++i) {
        const StaticType before = plan.types[i];
        plan.types[i] = CommonType(before, part.types[i]);
        plan.columns[i].type = plan.types[i].value_or(ColumnType::Text);
        plan.columns[i].size = std::max(plan.columns[i].size, part.columns[i].size);
        asText.push_back(FamilyOf(plan.types[i]) == Family::Text && before && part.types[i] &&
                         FamilyOf(before) != FamilyOf(part.types[i]));
    }
    return asText;
}

std::vector<KeyMode> ModesOf(const std::vector<StaticType>& types) {
    std::vector<KeyMode> modes;
    for (const StaticType type : types) {
        modes.push_back(KeyModeOf(type, type));
    }
    return modes;
}

/// Sorted by all columns: how rows come out that were made distinct.
OutputStagePtr SortByColumns(OutputStagePtr stage, const std::vector<StaticType>& types,
                             const TextComparer& texts) {
    KeyWriter key(texts);
    for (std::size_t i = 0; i < types.size(); ++i) {
        key.Add(MakeOutputNode(*stage, i, types[i]), KeyModeOf(types[i], types[i]));
    }
    return MakeSort(std::move(stage), std::move(key), types.size(), std::nullopt);
}

/// ORDER BY behind a UNION: places and names of columns only.
KeyWriter UnionOrder(Context& context, const Query& query, const Plan& plan, OutputStage& stage) {
    KeyWriter key(context.Texts());
    for (const OrderItem& item : query.orderBy) {
        const auto column = OutputColumn(*item.expression, plan.columns);
        if (!column) {
            context.NoteMissing(item.expression->source);
            continue;
        }
        const StaticType type = plan.types[*column];
        key.Add(MakeOutputNode(stage, *column, type), KeyModeOf(type, type), item.descending);
    }
    return key;
}

void CompileUnion(Context& context, const Query& query, Scope* outer, Plan& plan) {
    OutputStagePtr stage;
    for (std::size_t i = 0; i < query.parts.size(); ++i) {
        auto core = std::make_unique<CompiledCore>(context, query.parts[i], std::vector<OrderItem>(), outer);
        plan.correlated |= core->Correlated();
        if (i == 0) {
            plan.columns = core->columns;
            plan.types = core->types;
            stage = std::move(core->stage);
        } else {
            std::vector<bool> partAsText = Unite(plan, *core);
            std::vector<OutputStagePtr> both;
            both.push_back(std::move(stage));
            both.push_back(std::move(core->stage));
            stage = MakeUnion(std::move(both), std::move(partAsText));
            if (!query.all[i - 1]) {
                stage = MakeDistinct(std::move(stage), ModesOf(plan.types), context.Texts());
            }
        }
        plan.Keep(std::move(core));
    }
    if (!query.orderBy.empty()) {
        KeyWriter key = UnionOrder(context, query, plan, *stage);
        stage = MakeSort(std::move(stage), std::move(key), plan.types.size(), std::nullopt);
    } else if (!query.all.back()) {
        stage = SortByColumns(std::move(stage), plan.types, context.Texts());
    }
    plan.SetStage(std::move(stage));
}

}  // namespace

std::unique_ptr<QueryPlan> CompileQuery(Context& context, const Query& query, Scope* outer) {
    auto plan = std::make_unique<Plan>();
    if (query.parts.size() > 1) {
        CompileUnion(context, query, outer, *plan);
        return plan;
    }
    auto core = std::make_unique<CompiledCore>(context, query.parts[0], query.orderBy, outer);
    plan->columns = core->columns;
    plan->types = core->types;
    plan->correlated = core->Correlated();
    plan->SetStage(std::move(core->stage));
    plan->Keep(std::move(core));
    return plan;
}

}  // namespace tavrel::jet::sql
