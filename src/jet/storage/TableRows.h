// The rows of one table, put in, changed and taken out one at a time.  Long values outside their rows are
// such rows too.
//
// Rules:
//  1. A row keeps the slot that it was given: one that no longer fits its page moves, and its slot points to it.
//  2. A slot's number is never given out again; a page whose 255 numbers are used takes no more rows.
//  3. Pages with room stand in the free-space map; a page without live rows goes back to the file's free pages.
#pragma once

#include <vector>

#include "jet/storage/DataPage.h"
#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

class TableRows {
  public:
    /// `owner` goes into the header of new pages.  `free` may be a null pointer (page 0): every row then gets
    /// a page to itself, as in tables that are made so.
    TableRows(Pager& pager, PageAllocator& allocator, std::uint32_t owner, RowPointer owned, RowPointer free);

    /// REQUIRES: row.size() <= kMaxRowBytes.
    RowPointer Insert(ByteView row);
    /// Gives the row that a slot names other bytes.
    void Update(RowPointer at, ByteView row);
    /// Puts a row that no longer fits page `from` elsewhere; the caller makes its slot point there.
    RowPointer MoveOut(ByteView row, PageNumber from);
    /// Throws 3428 when there is no such row.
    void Delete(RowPointer at);

    /// A page of its own for a part of a chain.
    RowPointer InsertAlone(ByteView row, std::uint32_t chainMark);

    /// Pages were rolled back: what is remembered of them is forgotten.
    void Reset();

  private:
    PageNumber PageFor(std::size_t length);
    bool MakeFit(PageNumber page, std::size_t length, bool known);
    void DeleteSlot(RowPointer at);
    void FindCandidates();
    PageNumber NewPage(std::uint32_t chainMark);

    Pager& pager_;
    PageAllocator& allocator_;
    std::uint32_t owner_;
    RowPointer owned_;
    RowPointer free_;
    bool haveCandidates_ = false;
    std::vector<PageNumber> candidates_;  ///< pages of the free-space map not looked at yet, the best last
    PageNumber current_ = 0;              ///< where the last row went; 0 = none
};

}  // namespace tavrel::jet
