// One index page, searched and changed in place.  The layout stands in IndexPage.h.
#pragma once

#include <array>

#include "jet/index/EntryMask.h"
#include "jet/index/EntryPacking.h"
#include "jet/index/IndexPage.h"

namespace tavrel::jet {

/// Where the entries of a page end.  Holds no view on the page: it stays right only as long as the page's
/// entries do, or as they are changed by way of it.
class EntryTable {
  public:
    /// Throws 3428 when the page is no index page or its entry mask is impossible.
    explicit EntryTable(ByteView page);

    [[nodiscard]] unsigned Count() const { return before_[EntryMask::kWords]; }
    [[nodiscard]] unsigned Start(unsigned entry) const { return entry == 0 ? 0 : End(entry - 1); }
    /// REQUIRES: entry < Count().
    [[nodiscard]] unsigned End(unsigned entry) const;
    [[nodiscard]] unsigned Used() const { return used_; }
    [[nodiscard]] unsigned Prefix() const { return prefix_; }
    [[nodiscard]] bool Leaf() const { return leaf_; }
    [[nodiscard]] const EntryMask& Mask() const { return mask_; }

    /// The whole entry, prefix put back.
    [[nodiscard]] ByteVector Entry(ByteView page, unsigned entry) const;
    /// Appends all entries, whole.
    void AppendTo(EntryList& list, ByteView page) const;
    /// A node's child; entry Count() is the tail.
    [[nodiscard]] PageNumber Child(ByteView page, unsigned entry) const;
    /// The first entry that is not below `bound` (key + row pointer); Count() when all are.  In a node the
    /// child to descend into stands there.
    [[nodiscard]] unsigned LowerBound(ByteView page, ByteView bound) const;

    /// An entry that takes `length` bytes has been put in before entry `at`.
    void Insert(unsigned at, std::size_t length);

  private:
    void CheckEnds() const;
    void CountEnds(std::size_t from);
    [[nodiscard]] unsigned EndsUpTo(unsigned place) const;
    [[nodiscard]] int Compare(ByteView page, unsigned start, ByteView bound, unsigned skip) const;

    bool leaf_ = true;
    unsigned prefix_ = 0;
    unsigned used_ = 0;
    EntryMask mask_;
    std::array<std::uint16_t, EntryMask::kWords + 1> before_{};  ///< ends in the words before each
};

class IndexPageEditor {
  public:
    explicit IndexPageEditor(Page& page) : page_(page) {}

    /// An empty page of a level (0 = leaf).
    void Format(PageNumber owner, unsigned level);
    /// Replaces all entries.  REQUIRES: PackedSize(entries, prefix) <= kIndexRoom.
    void SetEntries(Entries entries, std::size_t prefix);

    /// Puts an entry in at a place if that is possible without touching other entries; false when there is no
    /// room or the page's prefix does not fit.  The table follows.
    bool TryInsert(EntryTable& table, unsigned at, ByteView entry);
    /// Takes an entry out.
    void Remove(const EntryTable& table, unsigned at);

    /// Points entry `at` of a node, Count() being the tail, to another child.
    void SetChild(const EntryTable& table, unsigned at, PageNumber child);
    void SetPrevious(PageNumber page) { PutU32(page_, 0x0C, page); }
    void SetNext(PageNumber page) { PutU32(page_, 0x10, page); }
    void SetTail(PageNumber page) { PutU32(page_, 0x14, page); }

  private:
    void SetUsed(std::size_t used) { PutU16(page_, 0x02, static_cast<std::uint16_t>(kIndexRoom - used)); }

    Page& page_;
};

}  // namespace tavrel::jet
