// Rows by an index.
#include "jet/sql/expression/Assignment.h"
#include "jet/sql/plan/RowStream.h"

namespace tavrel::jet::sql {

namespace {

class IndexScan : public RowStream {
  public:
    IndexScan(Context& context, Source& source, IndexLookup lookup, NodeList filters)
        : context_(context),
          source_(source),
          lookup_(std::move(lookup)),
          index_(source.Table()->Indexes()[lookup_.index]),
          filters_(std::move(filters)) {}

    void Open() override {
        reader_ = nullptr;
        among_.clear();
        nextAmong_ = 0;
        const bool possible = MakePrefix() && (lookup_.among.empty() || MakeAmong());
        if (!possible) {
            return;
        }
        if (lookup_.among.empty()) {
            SeekRange();
        } else {
            SeekNextAmong();
        }
    }

    bool Next() override {
        for (;;) {
            while (reader_ != nullptr && reader_->Next()) {
                context_.Visit();
                source_.Moved(*reader_);
                if ((!scanning_ || IsSought()) && AllTrue(filters_)) {
                    return true;
                }
            }
            if (!SeekNextAmong()) {
                return false;
            }
        }
    }

  private:
    [[nodiscard]] const TableColumn& ColumnOfPart(std::size_t part) const {
        return source_.Table()->Columns()[index_.parts[part].column];
    }

    /// False when no stored value can be equal.
    bool MakePrefix() {
        prefix_.clear();
        for (const NodePtr& node : lookup_.equal) {
            auto key = KeyFor(ColumnOfPart(prefix_.size()), node->Evaluate(), context_.Texts());
            if (!key) {
                return false;
            }
            prefix_.push_back(std::move(*key));
        }
        if (lookup_.null) {
            prefix_.emplace_back(Null{});
        }
        return true;
    }

    /// The values to look for, each once.
    bool MakeAmong() {
        KeyTable seen;
        ByteVector bytes;
        for (const NodePtr& node : lookup_.among) {
            auto key = KeyFor(ColumnOfPart(prefix_.size()), node->Evaluate(), context_.Texts());
            if (!key) {
                continue;
            }
            bytes.clear();
            AppendKey(*key, KeyMode::General, context_.Texts(), bytes);
            if (seen.Insert(bytes).isNew) {
                among_.push_back(std::move(*key));
            }
        }
        prefix_.emplace_back();
        return !among_.empty();
    }

    bool SeekNextAmong() {
        if (nextAmong_ >= among_.size()) {
            return false;
        }
        prefix_.back() = among_[nextAmong_++];
        Seek({prefix_, nullptr, true, nullptr, true});
        return true;
    }

    void SeekRange() {
        KeyRange range{prefix_, nullptr, lookup_.fromIncluded, nullptr, lookup_.toIncluded};
        const bool possible = SetBound(lookup_.from, from_, range.from, range.fromIncluded) &&
                              SetBound(lookup_.to, to_, range.to, range.toIncluded);
        if (possible) {
            Seek(range);
        }
    }

    /// A bound that is no value of the column is rounded and taken in, or left out: the filters decide. False
    /// for Null, which nothing is above or below.
    bool SetBound(const NodePtr& node, Value& held, const Value*& bound, bool& included) {
        if (node == nullptr) {
            return true;
        }
        const Value& value = node->Evaluate();
        if (IsNull(value)) {
            return false;
        }
        if (auto key = KeyFor(ColumnOfPart(prefix_.size()), value, context_.Texts())) {
            held = std::move(*key);
            bound = &held;
            return true;
        }
        included = true;
        try {
            ConvertFor(ColumnOfPart(prefix_.size()), value, held);
            bound = &held;
        } catch (const Error&) {
            bound = nullptr;
        }
        return true;
    }

    void Seek(const KeyRange& range) {
        scanning_ = false;
        if (cursor_ == nullptr) {
            columns_ = source_.UsedColumns();
            cursor_ = source_.Table()->OpenIndex(lookup_.index, columns_);
        }
        reader_ = cursor_.get();
        if (!cursor_->Seek(range)) {
            scan_ = source_.Table()->Scan(columns_);
            reader_ = scan_.get();
            scanning_ = true;
        }
    }

    /// A scan in place of one value's lookup must not bring the rows of the others.
    bool IsSought() {
        if (among_.empty()) {
            return true;
        }
        reader_->Get(index_.parts[prefix_.size() - 1].column, scanned_);
        return !IsNull(scanned_) && CompareValues(scanned_, prefix_.back(), context_.Texts()) == 0;
    }

    Context& context_;
    Source& source_;
    IndexLookup lookup_;
    const TableIndex& index_;
    NodeList filters_;
    std::vector<std::size_t> columns_;
    std::unique_ptr<IndexCursor> cursor_;
    std::unique_ptr<RowReader> scan_;
    RowReader* reader_ = nullptr;
    bool scanning_ = false;
    std::vector<Value> prefix_;
    std::vector<Value> among_;
    std::size_t nextAmong_ = 0;
    Value scanned_;
    Value from_;
    Value to_;
};

}  // namespace

RowStreamPtr MakeIndexScan(Context& context, Source& source, IndexLookup lookup, NodeList filters) {
    return std::make_unique<IndexScan>(context, source, std::move(lookup), std::move(filters));
}

}  // namespace tavrel::jet::sql
