// Walks the entries of an index in order, from any key on.
#pragma once

#include "jet/index/IndexPage.h"
#include "jet/storage/Pager.h"

namespace tavrel::jet {

/// Every function throws 3428 when the tree is damaged: a page that is not of this index, entries that do not
/// ascend, leaves chained in a circle.  Stands on no entry until First or Seek has returned true.
class IndexReader {
  public:
    /// `tablePage` is the definition page that the index's pages name as their owner.
    IndexReader(Pager& pager, PageNumber root, PageNumber tablePage)
        : pager_(pager), root_(root), owner_(tablePage) {}

    /// Goes to the first entry; false when the index is empty.
    bool First() { return Seek({}); }
    /// Goes to the first entry whose key is not below `key`, which may be the front of a key (its first
    /// columns); false when there is none.
    bool Seek(ByteView key);
    /// Goes on by one entry; false behind the last.  REQUIRES: stands on an entry.
    bool Next();

    /// REQUIRES: stands on an entry.  Views are good until the next move.
    [[nodiscard]] ByteView Key() const { return LeafKey(leaf_.entries[place_]); }
    [[nodiscard]] RowPointer Row() const { return LeafRow(leaf_.entries[place_]); }

  private:
    [[nodiscard]] IndexPageContent Load(PageNumber page);
    void Descend(ByteView key);
    bool SkipEmptyLeaves();

    Pager& pager_;
    PageNumber root_;
    PageNumber owner_;
    IndexPageContent leaf_;
    std::size_t place_ = 0;
    ByteVector before_;           ///< the entry that Next left
    std::size_t leavesLeft_ = 0;  ///< a walk meets no more leaves than the file has pages
};

}  // namespace tavrel::jet
