#include "jet/sql/plan/Accumulator.h"

#include <algorithm>

#include "jet/sql/expression/Arithmetic.h"

namespace tavrel::jet::sql {

namespace {

bool IsWhole(StaticType type) {
    return type == ColumnType::Boolean || type == ColumnType::Byte || type == ColumnType::Integer ||
           type == ColumnType::Long;
}

class CountAccumulator : public Accumulator {
  public:
    explicit CountAccumulator(Node* argument) : argument_(argument) {}
    void Clear() override { counts_.clear(); }
    void AddGroup() override { counts_.push_back(0); }
    void Add(std::size_t group) override {
        if (argument_ == nullptr || !IsNull(argument_->Evaluate())) {
            ++counts_[group];
        }
    }
    void Result(std::size_t group, Value& out) const override { out = counts_[group]; }

  private:
    Node* argument_;
    std::vector<std::int64_t> counts_;
};

/// Greatest, least, first and last values.
class ValueAccumulator : public Accumulator {
  public:
    ValueAccumulator(AggregateKind kind, Node& argument, const TextComparer& texts)
        : kind_(kind), argument_(argument), texts_(texts) {}
    void Clear() override { held_.clear(); }
    void AddGroup() override { held_.emplace_back(); }
    void Add(std::size_t group) override {
        const Value& value = argument_.Evaluate();
        Held& held = held_[group];
        if (Replaces(value, held)) {
            held.value = value;
        }
        held.any = true;
    }
    void Result(std::size_t group, Value& out) const override { out = held_[group].value; }

  private:
    struct Held {
        Value value;
        bool any = false;
    };

    [[nodiscard]] bool Replaces(const Value& value, const Held& held) const {
        if (kind_ == AggregateKind::First || kind_ == AggregateKind::Last) {
            return kind_ == AggregateKind::Last || !held.any;
        }
        if (IsNull(value) || IsNull(held.value)) {
            return IsNull(held.value);
        }
        const int order = CompareValues(value, held.value, texts_);
        return kind_ == AggregateKind::Minimum ? order < 0 : order > 0;
    }

    AggregateKind kind_;
    Node& argument_;
    const TextComparer& texts_;
    std::vector<Held> held_;
};

/// Sums and averages of Currency and Decimal stay exact.
class ExactSum {
  public:
    void Add(const Value& value) {
        if (IsNull(sum_)) {
            sum_ = value;
        } else {
            Calculate(BinaryOperator::Add, sum_, value, next_);
            sum_.swap(next_);
        }
    }
    void Sum(Value& out) const { out = sum_; }
    void Average(std::int64_t count, Value& out) const { out = NumberOf(sum_) / static_cast<double>(count); }

  private:
    Value sum_;
    Value next_;
};

class WholeSum {
  public:
    void Add(const Value& value) {
        if (const auto* whole = std::get_if<std::int64_t>(&value)) {
            sum_ += *whole;
        } else {
            sum_ += LongOf(value);
        }
    }
    void Sum(Value& out) const { out = static_cast<double>(sum_); }
    void Average(std::int64_t count, Value& out) const {
        out = static_cast<double>(sum_) / static_cast<double>(count);
    }

  private:
    std::int64_t sum_ = 0;
};

class DoubleSum {
  public:
    void Add(const Value& value) {
        const auto* number = std::get_if<double>(&value);
        sum_ += number != nullptr ? *number : NumberOf(value);
    }
    void Sum(Value& out) const { out = sum_; }
    void Average(std::int64_t count, Value& out) const { out = sum_ / static_cast<double>(count); }

  private:
    double sum_ = 0;
};

/// Null over no values at all.
template <typename Sum>
class SumAccumulator : public Accumulator {
  public:
    SumAccumulator(bool average, Node& argument) : average_(average), argument_(argument) {}
    void Clear() override { groups_.clear(); }
    void AddGroup() override { groups_.emplace_back(); }
    void Add(std::size_t group) override {
        const Value& value = argument_.Evaluate();
        if (!IsNull(value)) {
            groups_[group].sum.Add(value);
            ++groups_[group].count;
        }
    }
    void Result(std::size_t group, Value& out) const override {
        const Group& found = groups_[group];
        if (found.count == 0) {
            out = Null{};
        } else if (average_) {
            found.sum.Average(found.count, out);
        } else {
            found.sum.Sum(out);
        }
    }

  private:
    struct Group {
        Sum sum;
        std::int64_t count = 0;
    };
    bool average_;
    Node& argument_;
    std::vector<Group> groups_;
};

struct AggregateName {
    std::string_view name;
    AggregateKind kind;
};
constexpr AggregateName kNames[] = {{"COUNT", AggregateKind::Count}, {"MIN", AggregateKind::Minimum},
                                    {"MAX", AggregateKind::Maximum}, {"SUM", AggregateKind::Sum},
                                    {"AVG", AggregateKind::Average}, {"FIRST", AggregateKind::First},
                                    {"LAST", AggregateKind::Last}};

bool IsExact(StaticType type) {
    return type == ColumnType::Currency || type == ColumnType::Numeric;
}

}  // namespace

AggregateKind AggregateKindOf(std::string_view name) {
    return std::ranges::find(kNames, name, &AggregateName::name)->kind;
}

StaticType AggregateType(AggregateKind kind, StaticType argument) {
    if (kind == AggregateKind::Count) {
        return ColumnType::Long;
    }
    if (kind != AggregateKind::Sum && kind != AggregateKind::Average) {
        return argument;
    }
    const Family family = FamilyOf(argument);
    if (family != Family::Number && family != Family::Any) {
        throw MakeError(errors::kTypeMismatch);
    }
    return kind == AggregateKind::Sum && IsExact(argument) ? argument : StaticType(ColumnType::Double);
}

std::unique_ptr<Accumulator> MakeAccumulator(Aggregate& aggregate, const TextComparer& texts) {
    if (aggregate.kind == AggregateKind::Count) {
        return std::make_unique<CountAccumulator>(aggregate.argument.get());
    }
    Node& argument = *aggregate.argument;
    const bool average = aggregate.kind == AggregateKind::Average;
    if (aggregate.kind != AggregateKind::Sum && !average) {
        return std::make_unique<ValueAccumulator>(aggregate.kind, argument, texts);
    }
    if (IsExact(argument.Type())) {
        return std::make_unique<SumAccumulator<ExactSum>>(average, argument);
    }
    if (IsWhole(argument.Type())) {
        return std::make_unique<SumAccumulator<WholeSum>>(average, argument);
    }
    return std::make_unique<SumAccumulator<DoubleSum>>(average, argument);
}

}  // namespace tavrel::jet::sql
