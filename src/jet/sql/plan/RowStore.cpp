#include "jet/sql/plan/RowStore.h"

namespace tavrel::jet::sql {

void RowStore::Append() {
    const std::size_t place = size_ % kChunkRows;
    if (place == 0) {
        chunks_.push_back(std::make_unique<Value[]>(kChunkRows * cells_.size()));
    }
    Value* row = chunks_.back().get() + place * cells_.size();
    for (Cell* cell : cells_) {
        *row++ = cell->Get();
    }
    ++size_;
}

void RowStore::Show(std::size_t row) const {
    const Value* values = chunks_[row / kChunkRows].get() + row % kChunkRows * cells_.size();
    for (Cell* cell : cells_) {
        cell->PointTo(*values++);
    }
}

void RowStore::ShowNulls() const {
    for (Cell* cell : cells_) {
        cell->PointTo(kNullValue);
    }
}

void RowStore::Clear() {
    chunks_.clear();
    size_ = 0;
}

}  // namespace tavrel::jet::sql
