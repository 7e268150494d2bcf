// An index that changes: entries put in and taken out one at a time.
//
// Rules:
//  1. The root page keeps its number: when the root splits, its content moves to a new page below it.
//  2. A node entry is an upper bound of its child; the entries of the next child are greater.
//  3. No leaf but the root is empty, and no node has less than one entry beside its tail unless keys are so
//     long that its neighbours are full with one.
//  4. Leaves, and nodes of one level, are chained in key order.
//  5. Pages come from the allocator and stand in the index's map.
#pragma once

#include <vector>

#include "jet/index/EntryArena.h"
#include "jet/index/IndexPageEditor.h"
#include "jet/storage/PageAllocator.h"

namespace tavrel::jet {

class BTree {
  public:
    /// `tablePage` is what the index's pages name as their owner, `map` the index's usage map.
    BTree(Pager& pager, PageAllocator& allocator, PageNumber tablePage, RowPointer map, PageNumber root)
        : pager_(pager), allocator_(allocator), owner_(tablePage), map_(map), root_(root) {}

    /// Puts a row's entry in.  Throws 3047 when the key is too long for a page, 3428 when the tree is
    /// damaged.
    void Insert(ByteView key, RowPointer row);
    /// Takes a row's entry out; false when it is not there.
    bool Remove(ByteView key, RowPointer row);
    /// Takes out the entry of a row whatever its key, reading the leaves until it is met; false when it is
    /// not there.
    bool RemoveRow(RowPointer row);
    /// True when an entry with exactly that key is there, whatever its row.
    bool Contains(ByteView key);

  private:
    /// One page on the way down and the place in it: of the child in a node, of the entry in the leaf.
    struct Step {
        PageNumber page = 0;
        unsigned at = 0;
    };
    using Path = std::vector<Step>;

    EntryTable& TableOf(PageNumber number, ByteView page);
    void StillKnown(PageNumber number, ByteView page);
    Path Descend(ByteView bound, unsigned level);
    void InsertAt(const Path& path, ByteView entry);
    void Redirect(const Path& path, PageNumber child);
    void Split(const Path& path, Entries entries, bool appended);
    void SplitLeaf(const Path& path, Entries entries, bool appended);
    void SplitNode(const Path& path, Entries entries, bool appended);
    void InsertSeparator(unsigned level, ByteView bound, PageNumber child);
    PageNumber NewPageBehind(PageNumber page, unsigned level);
    void FreePage(PageNumber page);
    Path BelowNewRoot(const Path& path);
    void Shrink(Path path);
    bool DropChild(const Path& path);
    void Unchain(PageNumber page);
    bool JoinNeighbours(const Path& path, unsigned left);
    bool EvenOut(const Path& path, unsigned left, PageNumber leftPage, PageNumber rightPage, Entries entries);
    void DropRight(const Path& path, unsigned left, PageNumber leftPage, PageNumber rightPage);
    void LowerRoot();

    Pager& pager_;
    PageAllocator& allocator_;
    PageNumber owner_;
    RowPointer map_;
    PageNumber root_;

    /// A page that was taken apart, by its level.  One operation comes by a page several times, and the next
    /// one often comes by the same pages.
    struct Known {
        PageNumber page = 0;
        std::uint64_t edition = 0;
        std::optional<EntryTable> table;
    };
    [[nodiscard]] Known& KnownOf(ByteView page) { return known_[page[0x1A] % known_.size()]; }
    std::array<Known, 4> known_;
};

}  // namespace tavrel::jet
