#include "jet/sql/plan/Binder.h"

#include <algorithm>
#include <utility>

#include "jet/sql/plan/CompileQuery.h"
#include "jet/sql/plan/SubqueryNodes.h"
#include "jet/sql/syntax/SameTree.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"

namespace tavrel::jet::sql {

NodePtr Binder::Bind(const Expression& expression) {
    if (scope_.grouping != nullptr) {
        if (NodePtr key = BindGroupKey(expression)) {
            return key;
        }
    }
    switch (expression.kind) {
        case ExpressionKind::Literal:
            return MakeConstant(expression.literal);
        case ExpressionKind::Column:
            return BindColumn(expression);
        case ExpressionKind::Negate:
            return MakeNegation(Bind(*expression.arguments[0]));
        case ExpressionKind::Not:
            return MakeNot(Bind(*expression.arguments[0]));
        case ExpressionKind::Binary:
            return BindBinary(expression);
        case ExpressionKind::IsNull:
            return MakeIsNull(Bind(*expression.arguments[0]), expression.negated);
        case ExpressionKind::Like: {
            NodeList operands = BindArguments(expression);
            return MakeLike(std::move(operands[0]), std::move(operands[1]), expression.negated);
        }
        case ExpressionKind::Between:
            return MakeBetween(BindArguments(expression), expression.negated, context_.Texts());
        case ExpressionKind::In:
            return MakeIn(BindArguments(expression), expression.negated, context_.Texts());
        case ExpressionKind::Function:
            return MakeFunction(expression.name, expression.source, BindArguments(expression),
                                context_.workspace.now);
        case ExpressionKind::Aggregate:
            return BindAggregate(expression);
        case ExpressionKind::Identity:
            return MakeConstant(std::int64_t{context_.workspace.identity.value_or(0)});
        default:
            return BindQuery(expression);
    }
}

NodeList Binder::BindArguments(const Expression& expression) {
    NodeList nodes;
    nodes.reserve(expression.arguments.size());
    for (const ExpressionPtr& argument : expression.arguments) {
        nodes.push_back(Bind(*argument));
    }
    return nodes;
}

FoundColumn Binder::ColumnOf(const Expression& expression) const {
    return expression.kind == ExpressionKind::Column
               ? FindColumn(scope_, expression.qualifier, expression.name)
               : FoundColumn{};
}

NodePtr Binder::BindColumn(const Expression& expression) {
    const FoundColumn found = ColumnOf(expression);
    if (found.scope == nullptr) {
        context_.NoteMissing(expression.source);
        return MakeConstant(Null{});
    }
    (found.scope == &scope_ ? mask_ : found.scope->touched) |= SourceMask{1} << found.source;
    outside_ |= found.scope != &scope_;
    if (found.scope->grouping != nullptr) {
        GroupKey* key = found.scope->grouping->FindKey(found);
        if (key == nullptr) {
            throw MakeError(sqlErrors::kNotInAggregate, {expression.source});
        }
        return MakeColumn(key->result, key->node->Type());
    }
    Source& source = *found.scope->sources[found.source];
    return MakeColumn(source.CellOf(found.column), source.ColumnAt(found.column).staticType);
}

NodePtr Binder::BindBinary(const Expression& expression) {
    NodePtr left = Bind(*expression.arguments[0]);
    NodePtr right = Bind(*expression.arguments[1]);
    switch (expression.op) {
        case BinaryOperator::Or:
        case BinaryOperator::Xor:
        case BinaryOperator::And:
            return MakeLogic(expression.op, std::move(left), std::move(right));
        case BinaryOperator::Equal:
        case BinaryOperator::NotEqual:
        case BinaryOperator::Less:
        case BinaryOperator::LessOrEqual:
        case BinaryOperator::Greater:
        case BinaryOperator::GreaterOrEqual:
            // The engine takes <> NULL, with NULL written out, for IS NOT NULL.
            if (expression.op == BinaryOperator::NotEqual && right->Constant() != nullptr &&
                IsNull(*right->Constant()) && expression.arguments[1]->kind == ExpressionKind::Literal) {
                return MakeIsNull(std::move(left), true);
            }
            return MakeComparison(expression.op, std::move(left), std::move(right), context_.Texts(),
                                  mismatch_);
        default:
            return MakeArithmetic(expression.op, std::move(left), std::move(right));
    }
}

NodePtr Binder::BindAggregate(const Expression& expression) {
    if (scope_.grouping == nullptr) {
        throw MakeError(sqlErrors::kAggregateInWhere, {expression.source});
    }
    Grouping& grouping = *std::exchange(scope_.grouping, nullptr);
    for (const auto& known : grouping.aggregates) {
        if (Same(*known->expression, expression)) {
            scope_.grouping = &grouping;
            return MakeColumn(known->result, known->type);
        }
    }
    auto aggregate = std::make_unique<Aggregate>();
    aggregate->kind = AggregateKindOf(expression.name);
    aggregate->expression = &expression;
    if (!expression.arguments.empty()) {
        aggregate->argument = Bind(*expression.arguments[0]);
        aggregate->type = AggregateType(aggregate->kind, aggregate->argument->Type());
    } else {
        aggregate->type = ColumnType::Long;
    }
    scope_.grouping = &grouping;
    NodePtr node = MakeColumn(aggregate->result, aggregate->type);
    grouping.aggregates.push_back(std::move(aggregate));
    return node;
}

NodePtr Binder::BindQuery(const Expression& expression) {
    scope_.touched = 0;
    auto plan = CompileQuery(context_, *expression.query, &scope_);
    mask_ |= scope_.touched;
    outside_ |= plan->correlated;
    if (expression.kind == ExpressionKind::Exists) {
        return MakeExists(std::move(plan));
    }
    if (plan->columns.size() != 1) {
        throw MakeError(sqlErrors::kSubqueryColumns);
    }
    if (expression.kind == ExpressionKind::Scalar) {
        return MakeScalar(std::move(plan));
    }
    return MakeInQuery(Bind(*expression.arguments[0]), std::move(plan), expression.negated, context_.Texts());
}

NodePtr Binder::BindGroupKey(const Expression& expression) {
    for (const auto& key : scope_.grouping->keys) {
        if (Same(*key->expression, expression)) {
            return MakeColumn(key->result, key->node->Type());
        }
    }
    return nullptr;
}

bool Binder::Same(const Expression& a, const Expression& b) const {
    if (a.kind != b.kind || a.op != b.op || a.negated != b.negated || a.literal != b.literal ||
        a.arguments.size() != b.arguments.size() || (a.query == nullptr) != (b.query == nullptr) ||
        (a.query != nullptr && !SameQuery(*a.query, *b.query))) {
        return false;
    }
    if (a.kind == ExpressionKind::Column) {
        const FoundColumn found = ColumnOf(a);
        return found.scope != nullptr && found == ColumnOf(b);
    }
    return a.name == b.name &&
           std::ranges::equal(a.arguments, b.arguments,
                              [this](const auto& left, const auto& right) { return Same(*left, *right); });
}

}  // namespace tavrel::jet::sql
