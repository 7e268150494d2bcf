#include "jet/sql/plan/CompileCore.h"

#include <algorithm>

#include "jet/sql/plan/CompileQuery.h"
#include "jet/sql/plan/Planner.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::size_t kFirstExpressionNumber = 1000;

bool HoldsAggregate(const Expression& expression) {
    return expression.kind == ExpressionKind::Aggregate ||
           std::ranges::any_of(expression.arguments,
                               [](const auto& argument) { return HoldsAggregate(*argument); });
}

}  // namespace

std::optional<std::size_t> OutputColumn(const Expression& expression,
                                        const std::vector<ResultColumn>& columns) {
    if (expression.kind == ExpressionKind::Literal) {
        const auto* place = std::get_if<std::int64_t>(&expression.literal);
        const bool valid =
            place != nullptr && *place >= 1 && *place <= static_cast<std::int64_t>(columns.size());
        return valid ? std::optional(static_cast<std::size_t>(*place - 1)) : std::nullopt;
    }
    if (expression.kind != ExpressionKind::Column || !expression.qualifier.empty()) {
        return std::nullopt;
    }
    const auto found = std::ranges::find_if(columns, [&expression](const ResultColumn& column) {
        return text::EqualIgnoringCase(column.name, expression.name);
    });
    return found == columns.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - columns.begin()));
}

void AddSources(Context& context, const TableReference& table, Scope& scope) {
    if (table.left != nullptr) {
        AddSources(context, *table.left, scope);
        AddSources(context, *table.right, scope);
        return;
    }
    if (scope.sources.size() == kMaxSources) {
        throw MakeError(sqlErrors::kTooComplex);
    }
    if (table.query != nullptr) {
        // A query in FROM sees the queries round this one, not its neighbours.
        auto plan = CompileQuery(context, *table.query, scope.outer);
        scope.reachedOut |= plan->correlated;
        scope.sources.push_back(std::make_unique<Source>(table.alias, std::move(plan)));
        return;
    }
    auto found = context.workspace.tables.Find(table.name);
    if (found == nullptr) {
        throw MakeError(errors::kNoSuchTable, {table.name});
    }
    scope.sources.push_back(std::make_unique<Source>(table.alias, std::move(found)));
}

CompiledCore::CompiledCore(Context& context, const SelectCore& core, const std::vector<OrderItem>& orderBy,
                           Scope* outer)
    : context_(context), binder_(context, scope_) {
    scope_.outer = outer;
    for (const TableReference& table : core.from) {
        AddSources(context, table, scope_);
    }
    RowStreamPtr rows = PlanRows(core);
    const bool grouped = IsGrouped(core, orderBy);
    if (grouped) {
        BindGroupKeys(core);
        binder_.BindGroups(grouping_);
    }
    NodeList items = BindItems(core);
    NodeList having;
    if (core.having != nullptr) {
        having.push_back(binder_.Bind(*core.having));
    }
    std::vector<OrderKey> order = BindOrder(orderBy);
    if (grouped) {
        rows = MakeFilter(Group(core, std::move(rows)), std::move(having));
    }
    stage = MakeProjection(std::move(rows), std::move(items));
    OutputStage& projection = *stage;
    SortAndCut(core, std::move(order), projection);
}

RowStreamPtr CompiledCore::PlanRows(const SelectCore& core) {
    std::vector<Conjunct> conditions;
    if (core.where != nullptr) {
        AppendConjuncts(binder_, *core.where, errors::kTypeMismatch, conditions);
    }
    return Planner(binder_).Plan(core.from, std::move(conditions));
}

bool CompiledCore::IsGrouped(const SelectCore& core, const std::vector<OrderItem>& orderBy) {
    return !core.groupBy.empty() || core.having != nullptr ||
           std::ranges::any_of(core.items,
                               [](const SelectItem& item) {
                                   return item.expression != nullptr && HoldsAggregate(*item.expression);
                               }) ||
           std::ranges::any_of(orderBy,
                               [](const OrderItem& item) { return HoldsAggregate(*item.expression); });
}

void CompiledCore::BindGroupKeys(const SelectCore& core) {
    for (const ExpressionPtr& expression : core.groupBy) {
        auto key = std::make_unique<GroupKey>();
        key->expression = expression.get();
        key->column = binder_.ColumnOf(*expression);
        key->node = binder_.Bind(*expression);
        grouping_.keys.push_back(std::move(key));
    }
}

NodeList CompiledCore::BindItems(const SelectCore& core) {
    NodeList nodes;
    for (const SelectItem& item : core.items) {
        if (item.expression != nullptr) {
            AddItem(nodes, item);
        } else {
            AddAll(nodes, item.qualifier);
        }
    }
    QualifyEqualNames();
    return nodes;
}

/// An expression without a name of its own is called Expr1000 and so on, by its place.
void CompiledCore::AddItem(NodeList& nodes, const SelectItem& item) {
    NodePtr node = binder_.Bind(*item.expression);
    ResultColumn column{item.alias, node->Type().value_or(ColumnType::Text), 0};
    std::string qualifier;
    if (const FoundColumn found = binder_.ColumnOf(*item.expression); found.scope != nullptr) {
        const Source& source = *found.scope->sources[found.source];
        column.size = source.ColumnAt(found.column).size;
        if (item.alias.empty()) {
            column.name = source.ColumnName(found.column);
            qualifier = source.Alias();
        }
    }
    if (column.name.empty()) {
        column.name = "Expr" + std::to_string(kFirstExpressionNumber + nodes.size());
    }
    AddOutput(nodes, std::move(node), column, std::move(qualifier));
}

/// `*`, or `table.*`.
void CompiledCore::AddAll(NodeList& nodes, std::string_view qualifier) {
    if (scope_.grouping != nullptr) {
        throw MakeError(sqlErrors::kNotInAggregate, {"*"});
    }
    bool any = false;
    for (const auto& source : scope_.sources) {
        if (!qualifier.empty() && !text::EqualIgnoringCase(source->Alias(), qualifier)) {
            continue;
        }
        any = true;
        for (std::size_t i = 0; i < source->ColumnCount(); ++i) {
            const SourceColumn column = source->ColumnAt(i);
            AddOutput(nodes, MakeColumn(source->CellOf(i), column.staticType),
                      {column.name, column.type, column.size}, source->Alias());
        }
    }
    if (!any && !qualifier.empty()) {
        context_.NoteMissing(qualifier);
    } else if (!any) {
        throw MakeError(sqlErrors::kInSelectList);
    }
}

void CompiledCore::AddOutput(NodeList& nodes, NodePtr node, const ResultColumn& column,
                             std::string qualifier) {
    types.push_back(node->Type());
    nodes.push_back(std::move(node));
    columns.push_back(column);
    qualifiers_.push_back(std::move(qualifier));
}

/// Columns of two tables that have one name are told apart by their tables' names.
void CompiledCore::QualifyEqualNames() {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto equal = [&](const ResultColumn& other) {
            return text::EqualIgnoringCase(other.name, columns[i].name);
        };
        const bool several = scope_.sources.size() > 1 && std::ranges::count_if(columns, equal) > 1;
        names.push_back(several && !qualifiers_[i].empty() ? qualifiers_[i] + "." + columns[i].name
                                                           : columns[i].name);
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].name = std::move(names[i]);
    }
}

std::vector<CompiledCore::OrderKey> CompiledCore::BindOrder(const std::vector<OrderItem>& orderBy) {
    std::vector<OrderKey> order;
    for (const OrderItem& item : orderBy) {
        OrderKey key;
        key.column = OutputColumn(*item.expression, columns);
        if (!key.column && item.expression->kind == ExpressionKind::Literal) {
            throw MakeError(sqlErrors::kInOrderBy);
        }
        key.node = key.column ? nullptr : binder_.Bind(*item.expression);
        key.descending = item.descending;
        order.push_back(std::move(key));
    }
    return order;
}

RowStreamPtr CompiledCore::Group(const SelectCore& core, RowStreamPtr rows) {
    return OnlyCountsRows(core) ? MakeTableCount(*scope_.sources[0], grouping_)
                                : MakeGrouping(context_, std::move(rows), grouping_);
}

bool CompiledCore::OnlyCountsRows(const SelectCore& core) const {
    return core.where == nullptr && grouping_.keys.empty() && scope_.sources.size() == 1 &&
           scope_.sources[0]->Table() != nullptr &&
           std::ranges::all_of(grouping_.aggregates, [](const auto& aggregate) {
               return aggregate->kind == AggregateKind::Count && aggregate->argument == nullptr;
           });
}

/// DISTINCT, ORDER BY, TOP.  Rows made distinct come sorted by all their columns unless another order is
/// asked for.
void CompiledCore::SortAndCut(const SelectCore& core, std::vector<OrderKey> order, OutputStage& projection) {
    const TextComparer& texts = context_.Texts();
    const bool asked = !order.empty();
    if (core.distinct) {
        std::vector<KeyMode> modes;
        std::ranges::transform(types, std::back_inserter(modes),
                               [](StaticType type) { return KeyModeOf(type, type); });
        stage = MakeDistinct(std::move(stage), std::move(modes), texts);
        for (std::size_t i = 0; !asked && i < types.size(); ++i) {
            order.push_back({i, nullptr, false});
        }
    }
    if (order.empty() && (!core.top || !core.top->percent)) {
        stage = core.top ? MakeLimit(std::move(stage), core.top->count) : std::move(stage);
        return;
    }
    KeyWriter key(texts);
    for (OrderKey& part : order) {
        NodePtr node = part.column ? MakeOutputNode(projection, *part.column, types[*part.column])
                                   : std::move(part.node);
        const KeyMode mode = KeyModeOf(node->Type(), node->Type());
        key.Add(std::move(node), mode, part.descending);
    }
    stage = MakeSort(std::move(stage), std::move(key), types.size(), core.top);
}

}  // namespace tavrel::jet::sql
