// The live rows of a table in storage order: pages ascending, slots ascending.
#pragma once

#include "jet/catalog/TableDefinition.h"
#include "jet/catalog/Value.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/Pager.h"
#include "jet/storage/RowLayout.h"

namespace tavrel::jet {

class RowCursor {
  public:
    /// `ownerKey` deciphers Owner and SID columns.  The definition must outlive the cursor.
    RowCursor(Pager& pager, const TableDefinition& table, std::uint32_t ownerKey);

    /// Moves to the next row; false at the end.  Throws 3428 on damage, and when the table claims more row or
    /// long value bytes than its pages can hold.
    bool Next();
    /// Moves to the row that a slot names; Next then goes on where it was before.  Throws 3428 when there is
    /// none.
    void GoTo(RowPointer at);
    /// The slot that names the row (index entries name it); the row may lie elsewhere.
    [[nodiscard]] RowPointer At() const { return at_; }
    [[nodiscard]] const RowView& Row() const { return row_; }

    /// Stored bytes of a column (place in the definition's columns), nothing for null; long values as
    /// descriptors.
    [[nodiscard]] std::optional<ByteView> Raw(std::size_t column) const { return row_.Field(column); }
    /// Stored bytes with long values fetched and enciphered values deciphered.
    [[nodiscard]] std::optional<ByteVector> Stored(std::size_t column);
    /// The same into `out`, whose buffer is kept where that can be.
    void Stored(std::size_t column, std::optional<ByteVector>& out);
    /// The decoded value.
    [[nodiscard]] Value Get(std::size_t column);

  private:
    void FindPages();
    bool OpenPage();
    ByteView FollowMove(ByteView pointer);
    void CountBytes(std::size_t bytes);

    Pager& pager_;
    const TableDefinition& table_;
    RowShape shape_;
    std::uint32_t ownerKey_;
    bool havePages_ = false;
    std::vector<PageNumber> pages_;
    std::size_t nextPage_ = 0;
    std::optional<PageRef> page_;
    std::optional<DataPageView> view_;
    PageNumber pageNumber_ = 0;
    unsigned slot_ = 0;
    std::optional<PageRef> moved_;    ///< the page of the present row when it has moved
    std::optional<PageRef> visited_;  ///< the page that GoTo has gone to
    RowPointer at_{};
    RowView row_;
    std::uint64_t rowBudget_ = 0;
    std::uint64_t longBudget_ = 0;
};

/// Decodes stored bytes (long values already fetched).  Throws 3428 when the length does not fit the type.
Value DecodeValue(const Column& column, ByteView stored);

}  // namespace tavrel::jet
