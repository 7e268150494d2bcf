// Which rows have a key: behind joins and scans over equal keys.
#pragma once

#include "jet/sql/plan/KeyTable.h"

namespace tavrel::jet::sql {

/// Rows are numbered in the order in which they are added.  Those of one key follow each other in that order.
class KeyChains {
  public:
    static constexpr std::uint32_t kNone = KeyTable::kNone;

    void Add(ByteView key);
    /// A row that no key finds.
    void AddWithoutKey() { next_.push_back(kNone); }
    /// kNone when no row has the key.
    [[nodiscard]] std::uint32_t First(ByteView key) const;
    /// kNone behind the last row of the key.
    [[nodiscard]] std::uint32_t Behind(std::uint32_t row) const { return next_[row]; }
    void Clear();

  private:
    struct Ends {
        std::uint32_t first, last;
    };
    KeyTable keys_;
    std::vector<Ends> chains_;         ///< by key number
    std::vector<std::uint32_t> next_;  ///< by row
};

}  // namespace tavrel::jet::sql
