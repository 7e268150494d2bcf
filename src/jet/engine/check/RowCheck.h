// One row: its frame, where its values lie, how long they are, in what form texts are stored.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/engine/check/FindingLog.h"
#include "jet/engine/check/LongValueCheck.h"
#include "jet/engine/check/PlainTextCount.h"
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
    bool CheckFrame(const std::string& where, ByteView row);
    bool CheckOffsets(const std::string& where, const RowView& view, VariableBounds bounds);
    void CheckFixedPart(const std::string& where, const RowView& view, std::size_t end);
    bool CheckValues(const std::string& where, RowPointer slot, const RowView& view);
    bool CheckLength(const std::string& where, const Column& column, ByteView value);
    void CheckText(const std::string& where, RowPointer slot, std::size_t column, ByteView value);
    void CheckLongValues(RowPointer slot, const RowView& view);

    FindingLog& log_;
    std::string table_;
    const TableDefinition& definition_;
    const RowShape& shape_;
    std::vector<LongValueCheck>& longValues_;
    std::vector<PlainTextCount> plainTexts_;  ///< by column
    std::size_t autonumber_ = TableDefinition::npos;
    std::uint32_t highestAutonumber_ = 0;
};

}  // namespace tavrel::jet::check
