// A table without the traces of dropped columns: the others are numbered without gaps and packed, and rows
// are taken over into that shape.
#pragma once

#include "jet/catalog/TableDefinition.h"

namespace tavrel::jet::compact {

class PackedTable {
  public:
    explicit PackedTable(const TableDefinition& source);

    /// The new definition; its places (pages, maps, roots) are those of the source.
    [[nodiscard]] const TableDefinition& Definition() const { return packed_; }
    /// A row of the source in the new shape.  It keeps its age: it has the columns that it had. `sourceShape`
    /// must be that of the source.  Throws 3428 when the row is damaged.
    void Convert(const RowShape& sourceShape, ByteView row, ByteVector& out) const;
    /// True when Convert would do no more than copy.
    [[nodiscard]] bool Keeps(const RowView& row) const;

  private:
    void Renumber(const TableDefinition& source);
    void Build(const RowView& row, ByteVector& out) const;

    TableDefinition packed_;
    bool renumbered_ = false;
    /// Places of the columns in number order; the same in both definitions.
    std::vector<std::size_t> byNumber_;
    std::vector<std::uint16_t> oldNumbers_;  ///< by place
    std::vector<std::uint16_t> fixedEnds_;   ///< bytes of the fixed columns with numbers below the index
};

}  // namespace tavrel::jet::compact
