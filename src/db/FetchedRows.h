// The rows of a result set in memory, packed: a few bytes for each value beyond what it holds.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "jet/catalog/Value.h"

namespace tavrel::jet::sql {
class ResultSet;
}  // namespace tavrel::jet::sql

namespace tavrel::db {

class FetchedRows {
  public:
    static constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();

    /// Fetches at most `maxRows` rows and stands on the first.  Throws what fetching throws.
    FetchedRows(jet::sql::ResultSet& result, std::uint64_t maxRows);

    [[nodiscard]] const std::vector<std::string>& Names() const { return names_; }
    [[nodiscard]] std::uint64_t Count() const { return count_; }
    [[nodiscard]] bool AtEnd() const { return row_ == count_; }
    /// REQUIRES: not AtEnd.
    void Next();
    void First();
    /// A value of the row that it stands on; good until the next move.  REQUIRES: not AtEnd, column <
    /// Names().size().
    const jet::Value& Get(std::size_t column);

  private:
    void Append(jet::sql::ResultSet& result);
    void Unpack();

    std::vector<std::string> names_;
    std::vector<jet::ByteVector> blocks_;  ///< rows one behind the other, each whole in one block
    std::uint64_t count_ = 0;

    // The row that it stands on
    std::uint64_t row_ = 0;
    std::size_t block_ = 0;
    std::size_t offset_ = 0;
    std::vector<jet::Value> values_;  ///< empty until somebody asks

    jet::ByteVector packed_;  ///< the row being appended
};

}  // namespace tavrel::db
