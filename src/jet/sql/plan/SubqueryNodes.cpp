#include "jet/sql/plan/SubqueryNodes.h"

#include "jet/sql/plan/KeyTable.h"
#include "jet/sql/plan/KeyWriter.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

class ScalarNode : public Node {
  public:
    explicit ScalarNode(std::unique_ptr<QueryPlan> query) : Node(query->types[0]), query_(std::move(query)) {}

    const Value& Evaluate() override {
        if (!known_ || query_->correlated) {
            Run();
            known_ = true;
        }
        return value_;
    }

  private:
    void Run() {
        query_->Open();
        value_ = Null{};
        if (query_->Next()) {
            value_ = query_->Output(0);
            if (query_->Next()) {
                throw MakeError(sqlErrors::kSubqueryRows);
            }
        }
    }

    std::unique_ptr<QueryPlan> query_;
    Value value_;
    bool known_ = false;
};

class ExistsNode : public Node {
  public:
    explicit ExistsNode(std::unique_ptr<QueryPlan> query)
        : Node(ColumnType::Boolean), query_(std::move(query)) {}

    const Value& Evaluate() override {
        if (!known_ || query_->correlated) {
            query_->Open();
            value_ = query_->Next();
            known_ = true;
        }
        return value_;
    }

  private:
    std::unique_ptr<QueryPlan> query_;
    Value value_;
    bool known_ = false;
};

/// What stands in the query is looked up by key; it is read once, or anew for each value when it is
/// correlated.
class InQueryNode : public Node {
  public:
    InQueryNode(NodePtr value, std::unique_ptr<QueryPlan> query, bool negated, const TextComparer& texts)
        : Node(ColumnType::Boolean),
          value_(std::move(value)),
          query_(std::move(query)),
          negated_(negated),
          texts_(texts),
          mode_(KeyModeOf(value_->Type(), query_->types[0])) {}

    const Value& Evaluate() override {
        result_ = ToValue(Test());
        return result_;
    }
    Truth Test() override {
        const Truth found = query_->correlated ? Search() : LookUp();
        return negated_ ? Not(found) : found;
    }

  private:
    Truth Search() {
        const Value& value = value_->Evaluate();
        Truth found = Truth::False;
        for (query_->Open(); query_->Next();) {
            const Value& candidate = query_->Output(0);
            if (IsNull(value) || IsNull(candidate)) {
                found = Truth::Unknown;
            } else if (CompareValues(value, candidate, texts_) == 0) {
                return Truth::True;
            }
        }
        return found;
    }

    Truth LookUp() {
        if (!known_) {
            Read();
            known_ = true;
        }
        const Value& value = value_->Evaluate();
        if (keys_.Size() == 0 && !hasNull_) {
            return Truth::False;
        }
        if (IsNull(value)) {
            return Truth::Unknown;
        }
        key_.clear();
        AppendKey(value, mode_, texts_, key_);
        return keys_.Find(key_) != KeyTable::kNone ? Truth::True : hasNull_ ? Truth::Unknown : Truth::False;
    }

    void Read() {
        for (query_->Open(); query_->Next();) {
            const Value& value = query_->Output(0);
            if (IsNull(value)) {
                hasNull_ = true;
                continue;
            }
            key_.clear();
            AppendKey(value, mode_, texts_, key_);
            keys_.Insert(key_);
        }
    }

    NodePtr value_;
    std::unique_ptr<QueryPlan> query_;
    bool negated_;
    const TextComparer& texts_;
    KeyMode mode_;
    KeyTable keys_;
    ByteVector key_;
    bool hasNull_ = false;
    bool known_ = false;
    Value result_;
};

}  // namespace

NodePtr MakeScalar(std::unique_ptr<QueryPlan> query) {
    return std::make_unique<ScalarNode>(std::move(query));
}

NodePtr MakeExists(std::unique_ptr<QueryPlan> query) {
    return std::make_unique<ExistsNode>(std::move(query));
}

NodePtr MakeInQuery(NodePtr value, std::unique_ptr<QueryPlan> query, bool negated,
                    const TextComparer& texts) {
    const Family left = FamilyOf(value->Type());
    const Family right = FamilyOf(query->types[0]);
    if (left != right && left != Family::Any && right != Family::Any) {
        throw MakeError(errors::kTypeMismatch);
    }
    return std::make_unique<InQueryNode>(std::move(value), std::move(query), negated, texts);
}

}  // namespace tavrel::jet::sql
