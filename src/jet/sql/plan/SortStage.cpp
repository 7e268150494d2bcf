#include <algorithm>
#include <bit>

#include "jet/sql/plan/OutputStages.h"

namespace tavrel::jet::sql {

namespace {

class SortStage : public OutputStage {
  public:
    SortStage(OutputStagePtr rows, KeyWriter key, std::size_t columns, std::optional<Top> top)
        : rows_(std::move(rows)), key_(std::move(key)), columns_(columns), top_(top) {}

    void Open() override {
        entries_.clear();
        keys_.clear();
        chunks_.clear();
        keptRows_ = 0;
        next_ = 0;
        bar_.clear();
        pruneAt_ = kFirstPrune;
        for (rows_->Open(); rows_->Next();) {
            Keep();
            if (top_ && !top_->percent && entries_.size() >= pruneAt_) {
                Prune();
            }
        }
        Finish(Wanted());
    }

    bool Next() override { return next_ < entries_.size() && ++next_ != 0; }
    const Value& Output(std::size_t column) override { return RowAt(entries_[next_ - 1].row)[column]; }

  private:
    static constexpr std::size_t kChunkRows = 1024;
    static constexpr std::size_t kFirstPrune = 4096;

    struct Entry {
        std::uint64_t front;  ///< the key's first bytes, as a number of the same order
        std::uint64_t start;
        std::uint32_t length;
        std::uint32_t row;
    };

    [[nodiscard]] const Value* RowAt(std::size_t row) const {
        return chunks_[row / kChunkRows].get() + row % kChunkRows * columns_;
    }

    void Keep() {
        const ByteView key = key_.Write();
        if (!bar_.empty() && std::ranges::lexicographical_compare(bar_, key)) {
            return;
        }
        Entry entry{0, keys_.size(), static_cast<std::uint32_t>(key.size()), keptRows_++};
        for (std::size_t i = 0; i < sizeof entry.front; ++i) {
            entry.front = entry.front << 8 | (i < key.size() ? key[i] : 0U);
        }
        AppendBytes(keys_, key);
        const std::size_t place = entry.row % kChunkRows;
        if (place == 0) {
            chunks_.push_back(std::make_unique<Value[]>(kChunkRows * columns_));
        }
        Value* values = chunks_.back().get() + place * columns_;
        for (std::size_t column = 0; column < columns_; ++column) {
            values[column] = rows_->Output(column);
        }
        entries_.push_back(entry);
    }

    /// Of many rows only few are wanted: the others go, and rows behind the last wanted one are not even
    /// kept.
    void Prune() {
        const std::size_t wanted = Wanted();
        if (wanted > 0 && wanted < entries_.size() / 2 && !key_.Empty()) {
            Finish(wanted);
            const Entry& last = entries_[wanted - 1];
            bar_.assign(keys_.begin() + static_cast<std::ptrdiff_t>(last.start),
                        keys_.begin() + static_cast<std::ptrdiff_t>(last.start + last.length));
        }
        pruneAt_ = 2 * entries_.size() + kFirstPrune;
    }

    /// Sorts what is wanted, and cuts off the rest.
    void Finish(std::size_t wanted) {
        const auto less = [this](const Entry& a, const Entry& b) { return Less(a, b); };
        if (wanted < entries_.size() / 2) {
            std::partial_sort(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(wanted),
                              entries_.end(), less);
        } else {
            std::ranges::sort(entries_, less);
        }
        CutBehind(wanted);
    }

    [[nodiscard]] int Compare(const Entry& a, const Entry& b) const {
        if (a.front != b.front) {
            return a.front < b.front ? -1 : 1;
        }
        const ByteView keys(keys_);
        return CompareBytes(keys.subspan(a.start, a.length), keys.subspan(b.start, b.length));
    }
    [[nodiscard]] bool Less(const Entry& a, const Entry& b) const {
        const int order = Compare(a, b);
        return order != 0 ? order < 0 : a.row < b.row;
    }

    [[nodiscard]] std::size_t Wanted() const {
        if (!top_) {
            return entries_.size();
        }
        const std::uint64_t wanted = top_->percent ? (entries_.size() * top_->count + 99) / 100 : top_->count;
        return static_cast<std::size_t>(std::min<std::uint64_t>(wanted, entries_.size()));
    }

    /// Rows equal to the last one wanted are not torn from it.
    void CutBehind(std::size_t wanted) {
        if (wanted == 0 || key_.Empty()) {
            entries_.resize(wanted);
            return;
        }
        const Entry last = entries_[wanted - 1];
        const auto start = entries_.begin() + static_cast<std::ptrdiff_t>(wanted);
        const auto ties = std::partition(start, entries_.end(),
                                         [&](const Entry& entry) { return Compare(entry, last) == 0; });
        entries_.erase(ties, entries_.end());
        std::sort(start, entries_.end(), [](const Entry& a, const Entry& b) { return a.row < b.row; });
    }

    OutputStagePtr rows_;
    KeyWriter key_;
    std::size_t columns_;
    std::optional<Top> top_;
    std::vector<Entry> entries_;
    ByteVector keys_;
    std::vector<std::unique_ptr<Value[]>> chunks_;
    std::uint32_t keptRows_ = 0;
    ByteVector bar_;  ///< the key of the last row wanted so far; empty: none
    std::size_t pruneAt_ = 0;
    std::size_t next_ = 0;
};

}  // namespace

OutputStagePtr MakeSort(OutputStagePtr rows, KeyWriter key, std::size_t columns, std::optional<Top> top) {
    return std::make_unique<SortStage>(std::move(rows), std::move(key), columns, top);
}

}  // namespace tavrel::jet::sql
