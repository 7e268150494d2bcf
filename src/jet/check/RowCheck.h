// One row: its frame, where its values lie, how long they are, in what form texts are stored.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/FindingLog.h"
#include "jet/check/LongValueCheck.h"
#include "jet/check/PlainTextCount.h"
#include "jet/storage/RowLayout.h"

namespace tavrel::jet::check {

class RowCheck {
  public:
    /// Long values are given to `longValues`, one for each column that has maps.  All must outlive this
    /// object.
    RowCheck(FindingLog& log, const std::string& table, const TableDefinition& definition,
             const RowShape& shape, std::vector<LongValueCheck>& longValues);

    /// False when the values of the row cannot be relied on.  Throws 3428 for damage beyond that.
    bool Check(RowPointer slot, ByteView row);
    /// Findings about the rows together: texts that are not compressed, the autonumber that is behind.
    void Finish();

  private:
    bool CheckFrame(ByteView row);
    bool CheckOffsets(const RowView& view, VariableBounds bounds);
    void CheckFixedPart(const RowView& view, std::size_t end);
    bool CheckValues(const RowView& view);
    bool CheckLength(const Column& column, ByteView value);
    void CheckText(std::size_t column, ByteView value);
    void CheckLongValues(const RowView& view);
    [[nodiscard]] std::string Where() const;

    FindingLog& log_;
    std::string table_;
    const TableDefinition& definition_;
    const RowShape& shape_;
    std::vector<LongValueCheck>& longValues_;
    std::vector<PlainTextCount> plainTexts_;  ///< by column
    std::size_t autonumber_ = TableDefinition::npos;
    std::uint32_t highestAutonumber_ = 0;
    RowPointer slot_{};  ///< of the present row
    std::uint64_t olderRows_ = 0;
    std::uint64_t rowsWithoutOffsets_ = 0;
};

}  // namespace tavrel::jet::check
