// Where new rows go: first the pages that a free-space map names, then new ones.
//
// One store serves the rows of one table, or the long values of one column.  Pages that it leaves because
// they are full leave the free-space map; what it has appended can be taken back as a whole.
#pragma once

#include <map>
#include <vector>

#include "jet/storage/DataPage.h"
#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

class RowStore {
  public:
    /// `owner` goes into the header of new pages; `owned` and `free` are the maps of all pages and of those
    /// with room.
    RowStore(Pager& pager, PageAllocator& allocator, std::uint32_t owner, RowPointer owned, RowPointer free);

    /// Appends a row.  REQUIRES: row.size() <= kMaxRowBytes.
    RowPointer Append(ByteView row);

    /// A new page that takes no rows but those put there by PutAlone.
    PageNumber TakeAlone(std::uint32_t chainMark);
    /// The only row of a page from TakeAlone.
    RowPointer PutAlone(PageNumber page, ByteView row);

    /// Takes back every row appended since the store was made, or since Keep: the maps and the older pages
    /// are as they were, new pages are free again.
    void Undo();
    void Keep();

  private:
    PageNumber PageFor(std::size_t length);
    bool TakeCandidate(PageNumber page, std::size_t length);
    void LeaveCurrent();
    PageNumber TakePage(std::uint32_t chainMark);
    void FindCandidates();

    Pager& pager_;
    PageAllocator& allocator_;
    std::uint32_t owner_;
    RowPointer owned_;
    RowPointer free_;
    bool haveCandidates_ = false;
    std::vector<PageNumber> candidates_;  ///< older pages that may have room, the best last
    PageNumber current_ = 0;              ///< 0 = none yet
    std::map<PageNumber, Page> before_;   ///< older pages that took rows, as they were
    std::vector<PageNumber> taken_;       ///< new pages
    std::vector<PageNumber> left_;        ///< pages that were taken out of the free-space map
};

}  // namespace tavrel::jet
