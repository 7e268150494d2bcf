// The bytes of a row.
//
//   u16 column count when the row was written | fixed part | variable values |
//   u16 end | u16 offsets of values n-1 .. 0 | u16 n | null mask (bit = column number, 1 = not null)
//
// The offset table is there only if a variable column existed when the row was written.  Whether it did
// follows from the columns' `variablesBefore` (field 7 of their records), not from the table's present count.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// What the row layout needs to know of a column.
struct ColumnPlace {
    std::uint16_t number = 0;  ///< bit in the null mask
    bool fixed = false;
    bool boolean = false;  ///< the mask bit is the value
    std::uint16_t variableIndex =
        0;                     ///< field 7 of the record: index, or for fixed ones the count created before
    std::uint16_t offset = 0;  ///< fixed: offset behind the 2-byte column count
    std::uint16_t length = 0;  ///< bytes
};

/// How many variable columns can have existed when a row with a given column count was written.
struct VariableBounds {
    unsigned low = 0;
    unsigned high = 0;
};

class RowShape {
  public:
    RowShape() = default;
    RowShape(std::vector<ColumnPlace> columns, unsigned columnNumbers, unsigned variableNumbers);
    [[nodiscard]] const std::vector<ColumnPlace>& Columns() const { return columns_; }
    [[nodiscard]] unsigned ColumnNumbers() const { return columnNumbers_; }
    [[nodiscard]] unsigned VariableNumbers() const { return variableNumbers_; }
    [[nodiscard]] VariableBounds Bounds(unsigned columnCount) const;
    /// Length of the fixed part of a new row.
    [[nodiscard]] std::size_t FixedBytes() const { return fixedBytes_; }

  private:
    std::vector<ColumnPlace> columns_;
    unsigned columnNumbers_ = 0;    ///< column numbers ever given out
    unsigned variableNumbers_ = 0;  ///< variable columns ever given out
    VariableBounds present_;        ///< of rows with the present count
    std::size_t fixedBytes_ = 0;
};

/// A row as stored; columns are found when asked for.  Views the bytes, does not own them.
class RowView {
  public:
    RowView() = default;
    /// Throws 3428 when the row's frame is impossible.
    RowView(const RowShape& shape, ByteView row);

    /// The stored bytes of a column (place in RowShape::Columns), nothing for null.  A Boolean gives one
    /// byte, 1 or 0. Throws 3428 when the value lies outside the row.
    [[nodiscard]] std::optional<ByteView> Field(std::size_t column) const;
    [[nodiscard]] unsigned ColumnCount() const { return columnCount_; }
    [[nodiscard]] bool HasOffsets() const { return hasOffsets_; }
    [[nodiscard]] unsigned VariableCount() const { return variableCount_; }
    [[nodiscard]] unsigned VariableOffset(unsigned index) const;
    /// Where the offset table begins; the row's variable values end there or before.
    [[nodiscard]] std::size_t OffsetTable() const { return offsetTable_; }
    [[nodiscard]] bool MaskBit(unsigned number) const;

  private:
    void FindOffsets(VariableBounds bounds);
    [[nodiscard]] bool PlausibleTable(unsigned count, unsigned high) const;

    const RowShape* shape_ = nullptr;
    ByteView row_;
    unsigned columnCount_ = 0;
    std::size_t mask_ = 0;  ///< where the null mask starts
    bool hasOffsets_ = false;
    unsigned variableCount_ = 0;
    std::size_t offsetTable_ = 0;  ///< where the offset of the end stands
};

/// Builds the bytes of a new row.  `fields` has one entry for each column of the shape: nothing = null;
/// Booleans one byte; fixed columns exactly their length.  Throws 3047 when the row is too long for a page.
ByteVector BuildRow(const RowShape& shape, const std::vector<std::optional<ByteVector>>& fields);

}  // namespace tavrel::jet
