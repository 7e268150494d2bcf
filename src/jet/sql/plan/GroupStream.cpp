#include <algorithm>
#include <numeric>

#include "jet/sql/plan/Accumulator.h"
#include "jet/sql/plan/Grouping.h"

namespace tavrel::jet::sql {

namespace {

/// Shows the key that another node holds: the writer owns its parts.
class BorrowedNode : public Node {
  public:
    explicit BorrowedNode(Node& node) : Node(node.Type()), node_(node) {}
    const Value& Evaluate() override { return node_.Evaluate(); }

  private:
    Node& node_;
};

class GroupStream : public RowStream {
  public:
    GroupStream(Context& context, RowStreamPtr rows, Grouping& grouping)
        : rows_(std::move(rows)), grouping_(grouping), writer_(context.Texts()) {
        for (const auto& key : grouping_.keys) {
            writer_.Add(std::make_unique<BorrowedNode>(*key->node),
                        KeyModeOf(key->node->Type(), key->node->Type()));
        }
        for (const auto& aggregate : grouping_.aggregates) {
            accumulators_.push_back(MakeAccumulator(*aggregate, context.Texts()));
        }
        results_.resize(accumulators_.size());
    }

    void Open() override {
        Clear();
        if (writer_.Empty()) {
            AddGroup();
        }
        for (rows_->Open(); rows_->Next();) {
            const std::size_t group = writer_.Empty() ? 0 : GroupOfRow();
            for (const auto& accumulator : accumulators_) {
                accumulator->Add(group);
            }
        }
        order_.resize(groups_);
        std::iota(order_.begin(), order_.end(), 0);
        if (!writer_.Empty()) {
            SortGroups();
        }
    }

    bool Next() override {
        if (next_ == groups_) {
            return false;
        }
        const std::size_t group = order_[next_++];
        for (std::size_t i = 0; i < grouping_.keys.size(); ++i) {
            grouping_.keys[i]->result.PointTo(values_[group * grouping_.keys.size() + i]);
        }
        for (std::size_t i = 0; i < accumulators_.size(); ++i) {
            accumulators_[i]->Result(group, results_[i]);
            grouping_.aggregates[i]->result.PointTo(results_[i]);
        }
        return true;
    }

  private:
    void Clear() {
        keys_.Clear();
        values_.clear();
        groups_ = 0;
        next_ = 0;
        for (const auto& accumulator : accumulators_) {
            accumulator->Clear();
        }
    }

    void AddGroup() {
        ++groups_;
        for (const auto& accumulator : accumulators_) {
            accumulator->AddGroup();
        }
    }

    std::size_t GroupOfRow() {
        const auto [number, isNew] = keys_.Insert(writer_.Write());
        if (isNew) {
            for (const auto& key : grouping_.keys) {
                values_.push_back(key->node->Evaluate());
            }
            AddGroup();
        }
        return number;
    }

    void SortGroups() {
        std::ranges::sort(order_, [this](std::uint32_t a, std::uint32_t b) {
            return std::ranges::lexicographical_compare(keys_.Key(a), keys_.Key(b));
        });
    }

    RowStreamPtr rows_;
    Grouping& grouping_;
    KeyWriter writer_;
    KeyTable keys_;
    std::vector<Value> values_;  ///< of each group's first row
    std::vector<std::unique_ptr<Accumulator>> accumulators_;
    std::vector<Value> results_;
    std::vector<std::uint32_t> order_;
    std::size_t groups_ = 0;
    std::size_t next_ = 0;
};

class TableCount : public RowStream {
  public:
    TableCount(Source& source, Grouping& grouping) : source_(source), grouping_(grouping) {}
    void Open() override {
        count_ = static_cast<std::int64_t>(source_.Table()->RowCount());
        given_ = false;
    }
    bool Next() override {
        if (given_) {
            return false;
        }
        given_ = true;
        for (const auto& aggregate : grouping_.aggregates) {
            aggregate->result.PointTo(count_);
        }
        return true;
    }

  private:
    Source& source_;
    Grouping& grouping_;
    Value count_;
    bool given_ = false;
};

}  // namespace

GroupKey* Grouping::FindKey(const FoundColumn& column) const {
    const auto found = std::ranges::find_if(
        keys, [&column](const auto& key) { return key->column.scope != nullptr && key->column == column; });
    return found == keys.end() ? nullptr : found->get();
}

RowStreamPtr MakeGrouping(Context& context, RowStreamPtr rows, Grouping& grouping) {
    return std::make_unique<GroupStream>(context, std::move(rows), grouping);
}

RowStreamPtr MakeTableCount(Source& source, Grouping& grouping) {
    return std::make_unique<TableCount>(source, grouping);
}

}  // namespace tavrel::jet::sql
