// The one place where pages are taken and given back: the global free map (page 1, row 0; bit set = free) and
// the maps that say what a page is used for.
#pragma once

#include "jet/storage/UsageMap.h"

namespace tavrel::jet {

class PageAllocator {
  public:
    explicit PageAllocator(Pager& pager) : pager_(pager) {}

    /// Takes the lowest free page, or the one behind the end of the file.  The page is zeroed.  Throws 3036
    /// at two gigabytes.  REQUIRES: no map but the global ones names a page behind the end.
    PageNumber Allocate();
    /// Gives a page back to the free map.
    void Free(PageNumber page);

    /// Adds a page to, or removes it from, the map whose row is at `map`.  An inline map that cannot hold the
    /// page becomes one with bitmap pages; the row keeps its length.
    void Add(RowPointer map, PageNumber page);
    void Remove(RowPointer map, PageNumber page);

    /// Forgets what it remembers of the file: pages were rolled back.
    void Reset() { hint_ = 0; }

    /// A new, empty map row on `mapPage` (made when `mapPage` is 0), or on a further page when that one is
    /// full.
    RowPointer NewMap(PageNumber& mapPage);

  private:
    PageNumber Lowest();
    void TakeFromPending(PageNumber page);
    PageNumber LowestFree();
    bool FreeMapNames(PageNumber page);
    void SetBit(RowPointer map, PageNumber page, bool value);
    void SetBitmapBit(RowPointer map, PageNumber page, bool value);
    PageNumber BitmapPage(RowPointer map, std::size_t k);
    void AddBitmapPage(RowPointer map, std::size_t k, bool fill);
    void ConvertToBitmaps(RowPointer map);

    Pager& pager_;
    PageNumber hint_ = 0;  ///< no page below this one is free
};

}  // namespace tavrel::jet
