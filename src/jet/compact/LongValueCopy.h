// Long values on their way from the old file into the new one, a part at a time: a value may be larger than
// the memory that compaction may take.
#pragma once

#include "jet/compact/RowsOutput.h"
#include "jet/compact/SourcePages.h"

namespace tavrel::jet::compact {

class LongValueCopy {
  public:
    /// `nextMark` counts the chains of the new database.
    LongValueCopy(SourcePages& source, std::uint32_t& nextMark)
        : source_(source), nextMark_(nextMark), seen_(source.Count()) {}

    /// Copies the value that a descriptor names and puts its new place into the descriptor, which keeps its
    /// length; a value that stands in the row needs nothing.  `shorten`: a short value in a chain becomes one
    /// row.  Throws 3428 when any part is not as it should be.
    void Copy(std::span<std::uint8_t> descriptor, LongValuesOutput& out, bool shorten);

    /// True when every long value on the pages that were met was copied exactly once.
    [[nodiscard]] bool CopiedAll() const { return copied_ == present_; }

  private:
    ByteView PartAt(RowPointer at, std::uint32_t mark);
    RowPointer CopyChain(RowPointer at, std::uint32_t length, std::uint32_t mark, LongValuesOutput& out,
                         std::uint32_t newMark);
    ByteVector ReadChain(RowPointer at, std::uint32_t length, std::uint32_t mark);

    SourcePages& source_;
    std::uint32_t& nextMark_;
    std::vector<bool> seen_;       ///< pages whose values were counted
    std::optional<PageRef> page_;  ///< of the part at hand
    RowTally copied_;
    RowTally present_;
};

}  // namespace tavrel::jet::compact
