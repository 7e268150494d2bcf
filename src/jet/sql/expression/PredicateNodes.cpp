// Comparisons, BETWEEN, IN, IS NULL.
#include "jet/sql/expression/Nodes.h"

namespace tavrel::jet::sql {

namespace {

const Value kTrue = true;
const Value kFalse = false;

void RequireComparable(const NodePtr& left, const NodePtr& right, std::int32_t error) {
    const Family a = FamilyOf(left->Type());
    const Family b = FamilyOf(right->Type());
    if (a != b && a != Family::Any && b != Family::Any) {
        throw MakeError(error);
    }
}

/// Three-valued conditions evaluate by testing.
class PredicateNode : public Node {
  public:
    PredicateNode() : Node(ColumnType::Boolean) {}
    const Value& Evaluate() override {
        const Truth truth = Test();
        return truth == Truth::True ? kTrue : truth == Truth::False ? kFalse : kNullValue;
    }
    Truth Test() override = 0;
};

Truth Equality(const Value& left, const Value& right, const TextComparer& texts) {
    if (IsNull(left) || IsNull(right)) {
        return Truth::Unknown;
    }
    const auto* a = std::get_if<std::string>(&left);
    const auto* b = std::get_if<std::string>(&right);
    return ToTruth(a != nullptr && b != nullptr ? texts.Equal(*a, *b)
                                                : CompareValues(left, right, texts) == 0);
}

class EqualityNode : public PredicateNode {
  public:
    EqualityNode(NodePtr left, NodePtr right, bool negated, const TextComparer& texts)
        : left_(std::move(left)), right_(std::move(right)), negated_(negated), texts_(texts) {}
    Truth Test() override {
        const Truth equal = Equality(left_->Evaluate(), right_->Evaluate(), texts_);
        return negated_ ? Not(equal) : equal;
    }

  private:
    NodePtr left_;
    NodePtr right_;
    bool negated_;
    const TextComparer& texts_;
};

/// Which outcomes of a comparison make an operator true.
struct OrderRule {
    BinaryOperator op;
    bool less, equal, greater;
};
constexpr OrderRule kOrderRules[] = {{BinaryOperator::Less, true, false, false},
                                     {BinaryOperator::LessOrEqual, true, true, false},
                                     {BinaryOperator::Greater, false, false, true},
                                     {BinaryOperator::GreaterOrEqual, false, true, true}};

const OrderRule& RuleOf(BinaryOperator op) {
    for (const OrderRule& rule : kOrderRules) {
        if (rule.op == op) {
            return rule;
        }
    }
    return kOrderRules[0];
}

class OrderNode : public PredicateNode {
  public:
    OrderNode(const OrderRule& rule, NodePtr left, NodePtr right, const TextComparer& texts)
        : rule_(rule), left_(std::move(left)), right_(std::move(right)), texts_(texts) {}
    Truth Test() override {
        const Value& left = left_->Evaluate();
        const Value& right = right_->Evaluate();
        if (IsNull(left) || IsNull(right)) {
            return Truth::Unknown;
        }
        const int order = CompareValues(left, right, texts_);
        return ToTruth(order < 0 ? rule_.less : order > 0 ? rule_.greater : rule_.equal);
    }

  private:
    const OrderRule& rule_;
    NodePtr left_;
    NodePtr right_;
    const TextComparer& texts_;
};

class BetweenNode : public PredicateNode {
  public:
    BetweenNode(NodeList operands, bool negated, const TextComparer& texts)
        : operands_(std::move(operands)), negated_(negated), texts_(texts) {}
    Truth Test() override {
        const Value& value = operands_[0]->Evaluate();
        const Truth from = Bound(value, operands_[1]->Evaluate(), 1);
        const Truth to = from == Truth::False ? from : Bound(value, operands_[2]->Evaluate(), -1);
        const Truth inside = to == Truth::False ? to : from == Truth::Unknown ? from : to;
        return negated_ ? Not(inside) : inside;
    }

  private:
    /// `side` 1: the value is not below the bound; -1: not above.
    [[nodiscard]] Truth Bound(const Value& value, const Value& bound, int side) const {
        if (IsNull(value) || IsNull(bound)) {
            return Truth::Unknown;
        }
        return ToTruth(CompareValues(value, bound, texts_) * side >= 0);
    }

    NodeList operands_;
    bool negated_;
    const TextComparer& texts_;
};

class InNode : public PredicateNode {
  public:
    InNode(NodeList operands, bool negated, const TextComparer& texts)
        : operands_(std::move(operands)), negated_(negated), texts_(texts) {}
    Truth Test() override {
        const Value& value = operands_[0]->Evaluate();
        Truth found = Truth::False;
        for (std::size_t i = 1; i < operands_.size() && found != Truth::True; ++i) {
            const Truth equal = Equality(value, operands_[i]->Evaluate(), texts_);
            found = equal == Truth::False ? found : equal;
        }
        return negated_ ? Not(found) : found;
    }

  private:
    NodeList operands_;
    bool negated_;
    const TextComparer& texts_;
};

class IsNullNode : public PredicateNode {
  public:
    IsNullNode(NodePtr operand, bool negated) : operand_(std::move(operand)), negated_(negated) {}
    Truth Test() override { return ToTruth(IsNull(operand_->Evaluate()) != negated_); }

  private:
    NodePtr operand_;
    bool negated_;
};

}  // namespace

NodePtr MakeComparison(BinaryOperator op, NodePtr left, NodePtr right, const TextComparer& texts,
                       std::int32_t mismatch) {
    RequireComparable(left, right, mismatch);
    if (op == BinaryOperator::Equal || op == BinaryOperator::NotEqual) {
        return std::make_unique<EqualityNode>(std::move(left), std::move(right),
                                              op == BinaryOperator::NotEqual, texts);
    }
    return std::make_unique<OrderNode>(RuleOf(op), std::move(left), std::move(right), texts);
}

NodePtr MakeBetween(NodeList operands, bool negated, const TextComparer& texts) {
    RequireComparable(operands[0], operands[1], errors::kTypeMismatch);
    RequireComparable(operands[0], operands[2], errors::kTypeMismatch);
    return std::make_unique<BetweenNode>(std::move(operands), negated, texts);
}

NodePtr MakeIn(NodeList operands, bool negated, const TextComparer& texts) {
    for (const NodePtr& operand : operands) {
        RequireComparable(operands[0], operand, errors::kTypeMismatch);
    }
    return std::make_unique<InNode>(std::move(operands), negated, texts);
}

NodePtr MakeIsNull(NodePtr operand, bool negated) {
    return std::make_unique<IsNullNode>(std::move(operand), negated);
}

}  // namespace tavrel::jet::sql
