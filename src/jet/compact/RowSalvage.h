// Rows of a damaged table, read as far as they can be read.
#pragma once

#include <unordered_map>

#include "jet/compact/SourceSurvey.h"
#include "jet/storage/RowLayout.h"
#include "jet/table/RowKeys.h"

namespace tavrel::jet::compact {

class RowSalvage {
  public:
    /// Finds the rows on the pages.  The definition must outlive this; `name` is for messages.
    RowSalvage(SourcePages& source, const TableDefinition& table, std::string name,
               const std::vector<PageNumber>& pages, LossLog& losses);

    /// The slots that name rows, and rows whose slot is lost.
    [[nodiscard]] const std::vector<RowPointer>& Rows() const { return rows_; }
    /// The values by place, long values fetched; a value that cannot be read is null and told when `tell` is
    /// set, as is a row that cannot be read at all, for which nothing is returned.
    std::optional<StoredFields> Read(RowPointer at, bool tell);
    [[nodiscard]] std::string Place(RowPointer at) const;

  private:
    void FindRows(PageNumber number, std::vector<RowPointer>& hidden);
    [[nodiscard]] ByteVector RowBytes(RowPointer at);
    [[nodiscard]] std::optional<ByteVector> Value(const RowView& row, std::size_t place, RowPointer at,
                                                  bool tell);
    [[nodiscard]] bool StoresItsLength(ByteView descriptor);
    [[nodiscard]] ByteVector Checked(const Column& column, ByteView value);

    SourcePages& source_;
    const TableDefinition& table_;
    std::string name_;
    RowShape shape_;
    LossLog& losses_;
    std::vector<RowPointer> rows_;
    std::unordered_map<std::uint32_t, RowPointer> targets_;  ///< of moved rows, by slot
    std::uint64_t
        longBudget_;  ///< bytes of long values that are read before they must be running in a circle
};

}  // namespace tavrel::jet::compact
