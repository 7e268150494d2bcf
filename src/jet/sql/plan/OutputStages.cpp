#include "jet/sql/plan/OutputStages.h"

#include <algorithm>

namespace tavrel::jet::sql {

namespace {

class Projection : public OutputStage {
  public:
    Projection(RowStreamPtr rows, NodeList items)
        : rows_(std::move(rows)), items_(std::move(items)), values_(items_.size()) {}
    void Open() override { rows_->Open(); }
    bool Next() override {
        if (!rows_->Next()) {
            return false;
        }
        for (std::size_t i = 0; i < items_.size(); ++i) {
            values_[i] = &items_[i]->Evaluate();
        }
        return true;
    }
    const Value& Output(std::size_t column) override { return *values_[column]; }

  private:
    RowStreamPtr rows_;
    NodeList items_;
    std::vector<const Value*> values_;
};

class Distinct : public OutputStage {
  public:
    Distinct(OutputStagePtr rows, std::vector<KeyMode> modes, const TextComparer& texts)
        : rows_(std::move(rows)), modes_(std::move(modes)), texts_(texts) {}
    void Open() override {
        seen_.Clear();
        rows_->Open();
    }
    bool Next() override {
        while (rows_->Next()) {
            key_.clear();
            for (std::size_t i = 0; i < modes_.size(); ++i) {
                AppendKey(rows_->Output(i), modes_[i], texts_, key_);
            }
            if (seen_.Insert(key_).isNew) {
                return true;
            }
        }
        return false;
    }
    const Value& Output(std::size_t column) override { return rows_->Output(column); }

  private:
    OutputStagePtr rows_;
    std::vector<KeyMode> modes_;
    const TextComparer& texts_;
    KeyTable seen_;
    ByteVector key_;
};

class Union : public OutputStage {
  public:
    Union(std::vector<OutputStagePtr> parts, std::vector<bool> asText)
        : parts_(std::move(parts)), asText_(std::move(asText)), texts_(asText_.size()) {}
    void Open() override {
        at_ = 0;
        parts_[0]->Open();
    }
    bool Next() override {
        while (!parts_[at_]->Next()) {
            if (at_ + 1 == parts_.size()) {
                return false;
            }
            parts_[++at_]->Open();
        }
        return true;
    }
    const Value& Output(std::size_t column) override {
        const Value& value = parts_[at_]->Output(column);
        if (!asText_[column] || IsNull(value)) {
            return value;
        }
        texts_[column] = ValueText(value);
        return texts_[column];
    }

  private:
    std::vector<OutputStagePtr> parts_;
    std::vector<bool> asText_;
    std::vector<Value> texts_;
    std::size_t at_ = 0;
};

class Limit : public OutputStage {
  public:
    Limit(OutputStagePtr rows, std::uint64_t count) : rows_(std::move(rows)), count_(count) {}
    void Open() override {
        left_ = count_;
        if (left_ > 0) {
            rows_->Open();
        }
    }
    bool Next() override {
        if (left_ == 0) {
            return false;
        }
        --left_;
        return rows_->Next();
    }
    const Value& Output(std::size_t column) override { return rows_->Output(column); }

  private:
    OutputStagePtr rows_;
    std::uint64_t count_;
    std::uint64_t left_ = 0;
};

class OutputNode : public Node {
  public:
    OutputNode(OutputStage& stage, std::size_t column, StaticType type)
        : Node(type), stage_(stage), column_(column) {}
    const Value& Evaluate() override { return stage_.Output(column_); }

  private:
    OutputStage& stage_;
    std::size_t column_;
};

}  // namespace

OutputStagePtr MakeProjection(RowStreamPtr rows, NodeList items) {
    return std::make_unique<Projection>(std::move(rows), std::move(items));
}

OutputStagePtr MakeDistinct(OutputStagePtr rows, std::vector<KeyMode> modes, const TextComparer& texts) {
    return std::make_unique<Distinct>(std::move(rows), std::move(modes), texts);
}

OutputStagePtr MakeUnion(std::vector<OutputStagePtr> parts, std::vector<bool> asText) {
    return std::make_unique<Union>(std::move(parts), std::move(asText));
}

OutputStagePtr MakeLimit(OutputStagePtr rows, std::uint64_t count) {
    return std::make_unique<Limit>(std::move(rows), count);
}

NodePtr MakeOutputNode(OutputStage& stage, std::size_t column, StaticType type) {
    return std::make_unique<OutputNode>(stage, column, type);
}

}  // namespace tavrel::jet::sql
