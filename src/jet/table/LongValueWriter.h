// Memo and OLE values on their way into a table.  The forms are those of LongValue.h; which one a value
// takes:
//
//   up to 64 bytes                 inline
//   up to 3815 bytes               a row of its own on a page that several values share
//   longer                         a chain, each part alone on its page
//
// For a memo the limits apply to the uncompressed text.  It is compressed when that is shorter: inline
// always, as one row if the column says so, as a chain never.
#pragma once

#include <optional>

#include "jet/catalog/TableDefinition.h"
#include "jet/storage/LongValue.h"
#include "jet/storage/RowStore.h"

namespace tavrel::jet {

/// A value of which only the place is still open.
struct PreparedLongValue {
    std::uint32_t kind = kLongInline;
    ByteVector bytes;  ///< as they will be stored

    /// What the row holds; without a place yet for values outside the row, but of the right length.
    [[nodiscard]] ByteVector Descriptor(RowPointer at = {}, std::uint32_t mark = 0) const;
};

/// Both throw 3047 when the value is longer than a gigabyte.
PreparedLongValue PrepareMemo(std::u16string_view text, bool compress);
PreparedLongValue PrepareOle(ByteVector bytes);

/// Stores the values of one column.
class LongValueWriter {
  public:
    /// `column` must have maps.  `nextMark` counts the chains of the whole database.
    LongValueWriter(Pager& pager, PageAllocator& allocator, const Column& column, std::uint32_t& nextMark);

    /// Stores a value that is not inline and returns its descriptor.
    ByteVector Store(const PreparedLongValue& value);
    void Undo() { rows_.Undo(); }
    void Keep() { rows_.Keep(); }

  private:
    RowPointer StoreChain(ByteView bytes, std::uint32_t mark);

    RowStore rows_;
    std::uint32_t& nextMark_;
};

}  // namespace tavrel::jet
