// Constants, columns, logic, arithmetic.
#include "jet/sql/expression/Nodes.h"

#include "jet/sql/expression/Arithmetic.h"

namespace tavrel::jet::sql {

const Value kNullValue = Null{};

void Cell::Load() {
    if (reader_ == nullptr) {
        own_ = Null{};  // no row yet
    } else if (column_ == kRowId) {
        own_ = static_cast<std::int64_t>(reader_->Id());
    } else {
        reader_->Get(column_, own_);
    }
    current_ = &own_;
}

namespace {

const Value kTrue = true;
const Value kFalse = false;

const Value& ValueOf(Truth truth) {
    return truth == Truth::True ? kTrue : truth == Truth::False ? kFalse : kNullValue;
}

class ConstantNode : public Node {
  public:
    explicit ConstantNode(Value value) : Node(TypeOf(value)), value_(std::move(value)) {}
    const Value& Evaluate() override { return value_; }
    [[nodiscard]] const Value* Constant() const override { return &value_; }

  private:
    Value value_;
};

class ColumnNode : public Node {
  public:
    ColumnNode(Cell& cell, StaticType type) : Node(type), cell_(cell) {}
    const Value& Evaluate() override { return cell_.Get(); }

  private:
    Cell& cell_;
};

class LogicNode : public Node {
  public:
    LogicNode(BinaryOperator op, NodePtr left, NodePtr right)
        : Node(ColumnType::Boolean), op_(op), left_(std::move(left)), right_(std::move(right)) {}

    const Value& Evaluate() override { return ValueOf(Test()); }
    Truth Test() override {
        const Truth left = left_->Test();
        if (op_ == BinaryOperator::Xor) {
            const Truth right = right_->Test();
            return left == Truth::Unknown || right == Truth::Unknown ? Truth::Unknown
                                                                     : ToTruth(left != right);
        }
        const Truth decisive = op_ == BinaryOperator::And ? Truth::False : Truth::True;
        if (left == decisive) {
            return decisive;
        }
        const Truth right = right_->Test();
        return right == decisive || left != Truth::Unknown ? right : Truth::Unknown;
    }

  private:
    BinaryOperator op_;
    NodePtr left_;
    NodePtr right_;
};

class NotNode : public Node {
  public:
    explicit NotNode(NodePtr operand) : Node(ColumnType::Boolean), operand_(std::move(operand)) {}
    const Value& Evaluate() override { return ValueOf(Test()); }
    Truth Test() override { return Not(operand_->Test()); }

  private:
    NodePtr operand_;
};

class ArithmeticNode : public Node {
  public:
    ArithmeticNode(BinaryOperator op, NodePtr left, NodePtr right)
        : Node(ArithmeticType(op, left->Type(), right->Type())),
          op_(op),
          left_(std::move(left)),
          right_(std::move(right)) {}

    const Value& Evaluate() override {
        Calculate(op_, left_->Evaluate(), right_->Evaluate(), result_);
        return result_;
    }

  private:
    BinaryOperator op_;
    NodePtr left_;
    NodePtr right_;
    Value result_;
};

/// & takes a Null for an empty text, unless both are Null.
class ConcatenationNode : public Node {
  public:
    ConcatenationNode(NodePtr left, NodePtr right)
        : Node(ColumnType::Text), left_(std::move(left)), right_(std::move(right)) {}

    const Value& Evaluate() override {
        const Value& left = left_->Evaluate();
        const Value& right = right_->Evaluate();
        if (IsNull(left) && IsNull(right)) {
            return kNullValue;
        }
        SetText(result_, {});
        std::string& text = std::get<std::string>(result_);
        AppendText(left, text);
        AppendText(right, text);
        return result_;
    }

  private:
    NodePtr left_;
    NodePtr right_;
    Value result_;
};

class NegationNode : public Node {
  public:
    explicit NegationNode(NodePtr operand)
        : Node(ArithmeticType(BinaryOperator::Subtract, ColumnType::Long, operand->Type())),
          operand_(std::move(operand)) {}

    const Value& Evaluate() override {
        Negate(operand_->Evaluate(), result_);
        return result_;
    }

  private:
    NodePtr operand_;
    Value result_;
};

void RefuseBytes(const NodePtr& node) {
    if (FamilyOf(node->Type()) == Family::Bytes) {
        throw MakeError(errors::kTypeMismatch);
    }
}

}  // namespace

NodePtr MakeConstant(Value value) {
    return std::make_unique<ConstantNode>(std::move(value));
}

NodePtr MakeColumn(Cell& cell, StaticType type) {
    return std::make_unique<ColumnNode>(cell, type);
}

NodePtr MakeLogic(BinaryOperator op, NodePtr left, NodePtr right) {
    RefuseBytes(left);
    RefuseBytes(right);
    return std::make_unique<LogicNode>(op, std::move(left), std::move(right));
}

NodePtr MakeNot(NodePtr operand) {
    RefuseBytes(operand);
    return std::make_unique<NotNode>(std::move(operand));
}

NodePtr MakeArithmetic(BinaryOperator op, NodePtr left, NodePtr right) {
    if (op == BinaryOperator::Concatenate) {
        RefuseBytes(left);
        RefuseBytes(right);
        return std::make_unique<ConcatenationNode>(std::move(left), std::move(right));
    }
    return std::make_unique<ArithmeticNode>(op, std::move(left), std::move(right));
}

NodePtr MakeNegation(NodePtr operand) {
    // A literal with a sign is a literal: -1 can be looked up in an index.
    if (const Value* constant = operand->Constant()) {
        Value negative;
        Negate(*constant, negative);
        return MakeConstant(std::move(negative));
    }
    return std::make_unique<NegationNode>(std::move(operand));
}

StaticType CommonType(StaticType a, StaticType b) {
    if (!a || !b) {
        return a ? a : b;
    }
    if (a == b) {
        return a;
    }
    const Family family = FamilyOf(a);
    if (family != FamilyOf(b)) {
        return ColumnType::Text;
    }
    if (family == Family::Text) {
        return ColumnType::Memo;
    }
    if (family == Family::Number && (a == ColumnType::Date || b == ColumnType::Date)) {
        return ColumnType::Date;
    }
    return family == Family::Number ? ArithmeticType(BinaryOperator::Add, a, b) : a;
}

}  // namespace tavrel::jet::sql
