// Rows set aside: the values of some cells, to be shown in those cells again.
#pragma once

#include <memory>
#include <vector>

#include "jet/sql/expression/Node.h"

namespace tavrel::jet::sql {

class RowStore {
  public:
    RowStore() = default;
    explicit RowStore(std::vector<Cell*> cells) : cells_(std::move(cells)) {}

    /// Copies what the cells hold.
    void Append();
    /// Points the cells at a row.  Good until Clear.
    void Show(std::size_t row) const;
    /// Points the cells at Null.
    void ShowNulls() const;
    [[nodiscard]] std::size_t Size() const { return size_; }
    void Clear();

  private:
    static constexpr std::size_t kChunkRows = 1024;
    std::vector<Cell*> cells_;
    std::vector<std::unique_ptr<Value[]>> chunks_;  ///< kChunkRows rows each: values never move
    std::size_t size_ = 0;
};

}  // namespace tavrel::jet::sql
