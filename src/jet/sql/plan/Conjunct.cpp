#include "jet/sql/plan/Conjunct.h"

#include <algorithm>

namespace tavrel::jet::sql {

namespace {

struct BoundRule {
    BinaryOperator op, mirrored;
    ColumnTerm::Kind kind;
    bool included;
};
constexpr BoundRule kRules[] = {
    {BinaryOperator::Equal, BinaryOperator::Equal, ColumnTerm::Kind::Equal, true},
    {BinaryOperator::Greater, BinaryOperator::Less, ColumnTerm::Kind::From, false},
    {BinaryOperator::GreaterOrEqual, BinaryOperator::LessOrEqual, ColumnTerm::Kind::From, true},
    {BinaryOperator::Less, BinaryOperator::Greater, ColumnTerm::Kind::To, false},
    {BinaryOperator::LessOrEqual, BinaryOperator::GreaterOrEqual, ColumnTerm::Kind::To, true},
};

class ConjunctMaker {
  public:
    ConjunctMaker(Binder& binder, std::int32_t mismatch) : binder_(binder), mismatch_(mismatch) {}

    Conjunct Make(const Expression& expression) {
        conjunct_.expression = &expression;
        conjunct_.mismatch = mismatch_;
        binder_.SetMismatch(mismatch_);
        // Sides are bound once more than the whole: with queries in them that would multiply at every level.
        if (expression.holdsQuery) {
            conjunct_.terms.clear();
        } else if (expression.kind == ExpressionKind::Binary && RuleFor(expression.op, false) != nullptr) {
            MakeComparisonTerm(expression);
        } else if (HasColumnFirst(expression)) {
            MakePredicateTerms(expression);
        }
        binder_.TakeMask();
        conjunct_.node = binder_.Bind(expression);
        conjunct_.mask = binder_.TakeMask();
        binder_.SetMismatch(errors::kTypeMismatch);
        return std::move(conjunct_);
    }

  private:
    static const BoundRule* RuleFor(BinaryOperator op, bool mirrored) {
        const auto* rule = std::ranges::find(kRules, op, mirrored ? &BoundRule::mirrored : &BoundRule::op);
        return rule == std::end(kRules) ? nullptr : rule;
    }

    /// BETWEEN, IN and IS NULL, each without NOT.
    static bool HasColumnFirst(const Expression& expression) {
        return !expression.negated &&
               (expression.kind == ExpressionKind::Between || expression.kind == ExpressionKind::In ||
                expression.kind == ExpressionKind::IsNull);
    }

    SourceMask MaskOf(const Expression& expression, StaticType* type = nullptr) {
        binder_.TakeMask();
        binder_.TakeOutside();
        const NodePtr node = binder_.Bind(expression);
        if (type != nullptr) {
            *type = node->Type();
        }
        return binder_.TakeMask();
    }

    void MakeComparisonTerm(const Expression& expression) {
        const Expression& left = *expression.arguments[0];
        const Expression& right = *expression.arguments[1];
        conjunct_.leftMask = MaskOf(left, &conjunct_.leftType);
        conjunct_.leftOutside = binder_.TakeOutside();
        conjunct_.rightMask = MaskOf(right, &conjunct_.rightType);
        conjunct_.rightOutside = binder_.TakeOutside();
        conjunct_.equality = expression.op == BinaryOperator::Equal;
        conjunct_.joins = conjunct_.equality && conjunct_.leftMask != 0 && conjunct_.rightMask != 0 &&
                          (conjunct_.leftMask & conjunct_.rightMask) == 0;
        AddTerm(left, RuleFor(expression.op, false), right, conjunct_.rightMask);
        AddTerm(right, RuleFor(expression.op, true), left, conjunct_.leftMask);
    }

    void AddTerm(const Expression& column, const BoundRule* rule, const Expression& value, SourceMask mask) {
        AddTerm(column, {rule->kind, 0, 0, rule->included, {&value}, mask});
    }

    /// Keeps the term when `column` is a column of a table of this scope, and the values do not speak of that
    /// table.
    void AddTerm(const Expression& column, ColumnTerm term) {
        const FoundColumn found = binder_.ColumnOf(column);
        if (found.scope != &binder_.GetScope() || found.scope->sources[found.source]->Table() == nullptr ||
            (term.mask & SourceMask{1} << found.source) != 0) {
            return;
        }
        term.source = found.source;
        term.column = found.column;
        conjunct_.terms.push_back(std::move(term));
    }

    void MakePredicateTerms(const Expression& expression) {
        const Expression& column = *expression.arguments[0];
        std::vector<const Expression*> values;
        SourceMask mask = 0;
        for (std::size_t i = 1; i < expression.arguments.size(); ++i) {
            values.push_back(expression.arguments[i].get());
            mask |= MaskOf(*values.back());
        }
        if (expression.kind == ExpressionKind::IsNull) {
            AddTerm(column, {ColumnTerm::Kind::Null, 0, 0, true, {}, 0});
        } else if (expression.kind == ExpressionKind::In) {
            AddTerm(column, {ColumnTerm::Kind::Among, 0, 0, true, std::move(values), mask});
        } else {
            AddTerm(column, {ColumnTerm::Kind::From, 0, 0, true, {values[0]}, mask});
            AddTerm(column, {ColumnTerm::Kind::To, 0, 0, true, {values[1]}, mask});
        }
    }

    Binder& binder_;
    std::int32_t mismatch_;
    Conjunct conjunct_;
};

}  // namespace

void AppendConjuncts(Binder& binder, const Expression& condition, std::int32_t mismatch,
                     std::vector<Conjunct>& out) {
    if (condition.kind == ExpressionKind::Binary && condition.op == BinaryOperator::And) {
        AppendConjuncts(binder, *condition.arguments[0], mismatch, out);
        AppendConjuncts(binder, *condition.arguments[1], mismatch, out);
        return;
    }
    out.push_back(ConjunctMaker(binder, mismatch).Make(condition));
}

}  // namespace tavrel::jet::sql
