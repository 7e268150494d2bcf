#include "jet/index/BTree.h"

#include <algorithm>
#include <string>

namespace tavrel::jet {

namespace {

constexpr unsigned kMaxDepth = 32;
/// A page below this is joined with a neighbour when both fit into one.
constexpr std::size_t kLowWater = kIndexRoom / 4;

unsigned LevelOf(ByteView page) {
    return page[0x1A];
}
PageNumber NextOf(ByteView page) {
    return U32(page, 0x10);
}
PageNumber TailOf(ByteView page) {
    return U32(page, 0x14);
}

}  // namespace

/// REQUIRES: the page was read just now.  Good until the next call.
EntryTable& BTree::TableOf(PageNumber number, ByteView page) {
    Known& known = KnownOf(page);
    const std::uint64_t edition = pager_.Edition(number);
    if (known.page != number || known.edition != edition || !known.table) {
        known.table.emplace(page);
        known.page = number;
        known.edition = edition;
    }
    return *known.table;
}

/// The page was changed, and what is known of it with it.
void BTree::StillKnown(PageNumber number, ByteView page) {
    KnownOf(page).edition = pager_.Edition(number);
}

/// The way from the root to the page of a level in which `bound` belongs.
BTree::Path BTree::Descend(ByteView bound, unsigned level) {
    Path path;
    path.reserve(4);
    for (PageNumber number = root_;;) {
        const PageRef page = pager_.Read(number);
        const EntryTable& table = TableOf(number, page);
        if (U32(page, 4) != owner_ || path.size() == kMaxDepth || table.Leaf() != (LevelOf(page) == 0)) {
            ThrowDamaged("인덱스 페이지 " + std::to_string(number) + "이(가) 다른 곳에 속함");
        }
        const unsigned at = table.LowerBound(page, bound);
        path.push_back({number, at});
        if (LevelOf(page) == level) {
            return path;
        }
        number = table.Leaf() ? 0 : table.Child(page, at);
        if (number == 0 || LevelOf(page) < level) {
            ThrowDamaged("인덱스 트리의 단계가 잘못됨");
        }
    }
}

void BTree::Insert(ByteView key, RowPointer row) {
    if (key.size() > kMaxKeyBytes) {
        throw MakeError(errors::kRecordTooLarge, {}, "인덱스 키가 너무 김");
    }
    const ByteVector entry = LeafEntry(key, row);
    InsertAt(Descend(entry, 0), entry);
}

bool BTree::Contains(ByteView key) {
    const Path path = Descend(key, 0);
    PageNumber pagesLeft = pager_.PageCount();
    for (PageNumber number = path.back().page; number != 0;) {
        const PageRef page = pager_.Read(number);
        if (pagesLeft-- == 0) {
            ThrowDamaged("인덱스의 잎이 되풀이됨");
        }
        const EntryTable& table = TableOf(number, page);
        const unsigned at = number == path.back().page ? path.back().at : 0;
        if (at < table.Count()) {
            const ByteVector entry = table.Entry(page, at);
            return std::ranges::equal(LeafKey(entry), key);
        }
        number = NextOf(page);
    }
    return false;
}

void BTree::InsertAt(const Path& path, ByteView entry) {
    const Step& step = path.back();
    EntryTable& table = TableOf(step.page, pager_.Read(step.page));
    Page& page = pager_.Write(step.page);
    IndexPageEditor editor(page);
    if (editor.TryInsert(table, step.at, entry)) {
        StillKnown(step.page, page);
        return;
    }
    const bool appended = step.at == table.Count() && NextOf(page) == 0;
    EntryList list;
    table.AppendTo(list, page);
    std::vector<ByteView> entries = list.Views();
    entries.insert(entries.begin() + step.at, entry);
    const std::optional<std::size_t> prefix =
        table.Leaf() ? FittingPrefix(entries) : std::optional<std::size_t>(0);
    if (prefix && PackedSize(entries, *prefix) <= kIndexRoom) {
        editor.SetEntries(entries, *prefix);
        return;
    }
    Split(path, entries, appended);
}

/// Moves the root's content to a new page below it (rule 1); the path then leads through both.
BTree::Path BTree::BelowNewRoot(const Path& path) {
    if (path.size() > 1) {
        return path;
    }
    const PageNumber below = allocator_.Allocate();
    allocator_.Add(map_, below);
    unsigned level = 0;
    {
        const PageRef root = pager_.Read(root_);
        level = LevelOf(root);
        std::ranges::copy(root.Bytes(), pager_.Write(below).begin());
    }
    IndexPageEditor root(pager_.Write(root_));
    root.Format(owner_, level + 1);
    root.SetTail(below);
    return {{root_, 0}, {below, path.back().at}};
}

void BTree::Split(const Path& path, Entries entries, bool appended) {
    const Path deeper = BelowNewRoot(path);
    if (LevelOf(pager_.Read(deeper.back().page)) == 0) {
        SplitLeaf(deeper, entries, appended);
    } else {
        SplitNode(deeper, entries, appended);
    }
}

/// Points the parent's place for the page at the end of `path` to another page.
void BTree::Redirect(const Path& path, PageNumber child) {
    const Step& parent = path[path.size() - 2];
    const EntryTable table(pager_.Read(parent.page));
    IndexPageEditor(pager_.Write(parent.page)).SetChild(table, parent.at, child);
}

void BTree::SplitLeaf(const Path& path, Entries entries, bool appended) {
    const std::vector<std::size_t> ends = LeafParts(entries, appended);
    std::vector<PageNumber> pages = {path.back().page};
    while (pages.size() < ends.size()) {
        pages.push_back(NewPageBehind(pages.back(), 0));
    }
    std::size_t from = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const Entries part = Part(entries, from, ends[i]);
        IndexPageEditor(pager_.Write(pages[i])).SetEntries(part, FittingPrefix(part).value_or(0));
        from = ends[i];
    }
    // The old place in the parent now bounds the last part; the others get entries before it.
    Redirect(path, pages.back());
    for (std::size_t i = 0; i + 1 < ends.size(); ++i) {
        InsertSeparator(1, entries[ends[i] - 1], pages[i]);
    }
}

void BTree::SplitNode(const Path& path, Entries entries, bool appended) {
    const PageNumber left = path.back().page;
    unsigned level = 0;
    PageNumber tail = 0;
    {
        const PageRef page = pager_.Read(left);
        level = LevelOf(page);
        tail = TailOf(page);
    }
    const std::size_t separator = NodeSeparator(entries, appended);
    const PageNumber right = NewPageBehind(left, level);
    IndexPageEditor rightEditor(pager_.Write(right));
    rightEditor.SetEntries(Part(entries, separator + 1, entries.size()), 0);
    rightEditor.SetTail(tail);
    IndexPageEditor leftEditor(pager_.Write(left));
    leftEditor.SetEntries(Part(entries, 0, separator), 0);
    leftEditor.SetTail(NodeChild(entries[separator]));
    Redirect(path, right);
    InsertSeparator(level + 1, NodeBound(entries[separator]), left);
}

/// An entry for a child that ends at `bound`, before the place that bounds what follows it.
void BTree::InsertSeparator(unsigned level, ByteView bound, PageNumber child) {
    InsertAt(Descend(bound, level), NodeEntry(bound, child));
}

PageNumber BTree::NewPageBehind(PageNumber page, unsigned level) {
    const PageNumber fresh = allocator_.Allocate();
    allocator_.Add(map_, fresh);
    const PageNumber next = NextOf(pager_.Read(page));
    IndexPageEditor editor(pager_.Write(fresh));
    editor.Format(owner_, level);
    editor.SetPrevious(page);
    editor.SetNext(next);
    IndexPageEditor(pager_.Write(page)).SetNext(fresh);
    if (next != 0) {
        IndexPageEditor(pager_.Write(next)).SetPrevious(fresh);
    }
    return fresh;
}

void BTree::FreePage(PageNumber page) {
    allocator_.Remove(map_, page);
    allocator_.Free(page);
}

bool BTree::Remove(ByteView key, RowPointer row) {
    const ByteVector entry = LeafEntry(key, row);
    Path path = Descend(entry, 0);
    const Step& step = path.back();
    const EntryTable table(pager_.Read(step.page));
    if (step.at == table.Count() || table.Entry(pager_.Read(step.page), step.at) != entry) {
        return false;
    }
    IndexPageEditor(pager_.Write(step.page)).Remove(table, step.at);
    Shrink(std::move(path));
    return true;
}

bool BTree::RemoveRow(RowPointer row) {
    PageNumber pagesLeft = pager_.PageCount();
    for (PageNumber number = Descend({}, 0).back().page; number != 0;) {
        const PageRef page = pager_.Read(number);
        const EntryTable table(page);
        if (!table.Leaf() || pagesLeft-- == 0) {
            ThrowDamaged("인덱스의 잎이 되풀이됨");
        }
        for (unsigned i = 0; i < table.Count(); ++i) {
            const ByteVector entry = table.Entry(page, i);
            if (LeafRow(entry) == row) {
                return Remove(LeafKey(entry), row);
            }
        }
        number = NextOf(page);
    }
    return false;
}

/// Drops pages that have become empty and joins those that are low, from the end of the path upward.
void BTree::Shrink(Path path) {
    bool empty = EntryTable(pager_.Read(path.back().page)).Count() == 0;
    for (; path.size() > 1; path.pop_back()) {
        if (empty) {
            empty = !DropChild(path);
            continue;
        }
        const EntryTable table(pager_.Read(path.back().page));
        const Step& parent = path[path.size() - 2];
        const unsigned children = EntryTable(pager_.Read(parent.page)).Count() + 1;
        const bool joined =
            table.Used() < kLowWater && ((parent.at + 1 < children && JoinNeighbours(path, parent.at)) ||
                                         (parent.at > 0 && JoinNeighbours(path, parent.at - 1)));
        if (!joined) {
            return;
        }
    }
    if (empty) {
        IndexPageEditor(pager_.Write(root_)).Format(owner_, 0);
    }
    LowerRoot();
}

/// Frees the empty page at the end of the path and takes it out of its parent; false when the parent has no
/// other child and is empty itself.  What would have gone into the page goes into its neighbour from now on.
bool BTree::DropChild(const Path& path) {
    Unchain(path.back().page);
    FreePage(path.back().page);
    const Step& parent = path[path.size() - 2];
    const EntryTable table(pager_.Read(parent.page));
    if (table.Count() == 0) {
        return false;
    }
    Page& page = pager_.Write(parent.page);
    IndexPageEditor editor(page);
    const bool tail = parent.at == table.Count();
    if (tail) {
        editor.SetTail(table.Child(page, parent.at - 1));
    }
    editor.Remove(table, tail ? parent.at - 1 : parent.at);
    return true;
}

void BTree::Unchain(PageNumber page) {
    const PageRef gone = pager_.Read(page);
    const PageNumber previous = U32(gone, 0x0C);
    const PageNumber next = NextOf(gone);
    if (previous != 0) {
        IndexPageEditor(pager_.Write(previous)).SetNext(next);
    }
    if (next != 0) {
        IndexPageEditor(pager_.Write(next)).SetPrevious(previous);
    }
}

/// Joins the parent's children `left` and `left` + 1; false when both do not fit one page.
bool BTree::JoinNeighbours(const Path& path, unsigned left) {
    PageNumber leftPage = 0;
    PageNumber rightPage = 0;
    {
        const PageRef parent = pager_.Read(path[path.size() - 2].page);
        const EntryTable table(parent);
        leftPage = table.Child(parent, left);
        rightPage = table.Child(parent, left + 1);
    }
    const PageRef leftRef = pager_.Read(leftPage);
    const PageRef rightRef = pager_.Read(rightPage);
    const EntryTable leftTable(leftRef);
    const EntryTable rightTable(rightRef);
    if (leftTable.Leaf() != rightTable.Leaf() || leftPage == rightPage) {
        ThrowDamaged("인덱스 트리의 단계가 잘못됨");
    }
    EntryList list;
    leftTable.AppendTo(list, leftRef);
    std::optional<std::size_t> prefix;
    if (!leftTable.Leaf()) {
        const PageRef parent = pager_.Read(path[path.size() - 2].page);
        const ByteVector separator = EntryTable(parent).Entry(parent, left);
        list.Add(NodeEntry(NodeBound(separator), TailOf(leftRef)), {});
    }
    rightTable.AppendTo(list, rightRef);
    const std::vector<ByteView> entries = list.Views();
    prefix = leftTable.Leaf() ? FittingPrefix(entries) : std::optional<std::size_t>(0);
    if (!prefix || PackedSize(entries, *prefix) > kIndexRoom) {
        return !leftTable.Leaf() && (leftTable.Count() == 0 || rightTable.Count() == 0) &&
               EvenOut(path, left, leftPage, rightPage, entries);
    }
    const PageNumber tail = TailOf(rightRef);
    IndexPageEditor editor(pager_.Write(leftPage));
    editor.SetEntries(entries, *prefix);
    editor.SetTail(tail);
    DropRight(path, left, leftPage, rightPage);
    return true;
}

/// A node without entries beside a full one: both get half (rule 3).  Always false: no page has gone.
bool BTree::EvenOut(const Path& path, unsigned left, PageNumber leftPage, PageNumber rightPage,
                    Entries entries) {
    const std::size_t separator = NodeSeparator(entries, false);
    const PageNumber parent = path[path.size() - 2].page;
    unsigned level = 0;
    {
        const PageRef page = pager_.Read(parent);
        level = LevelOf(page);
        const EntryTable table(page);
        IndexPageEditor(pager_.Write(parent)).Remove(table, left);
    }
    IndexPageEditor leftEditor(pager_.Write(leftPage));
    leftEditor.SetEntries(Part(entries, 0, separator), 0);
    leftEditor.SetTail(NodeChild(entries[separator]));
    IndexPageEditor(pager_.Write(rightPage)).SetEntries(Part(entries, separator + 1, entries.size()), 0);
    InsertSeparator(level, NodeBound(entries[separator]), leftPage);
    return false;
}

/// The right page of a joined pair goes; the parent's place for it now leads to the left one.
void BTree::DropRight(const Path& path, unsigned left, PageNumber leftPage, PageNumber rightPage) {
    Unchain(rightPage);
    FreePage(rightPage);
    const PageNumber parent = path[path.size() - 2].page;
    const EntryTable table(pager_.Read(parent));
    IndexPageEditor editor(pager_.Write(parent));
    editor.SetChild(table, left + 1, leftPage);
    editor.Remove(table, left);
}

/// A root node with nothing but its tail takes over its child's content.
void BTree::LowerRoot() {
    for (unsigned depth = 0; depth < kMaxDepth; ++depth) {
        PageNumber child = 0;
        {
            const PageRef root = pager_.Read(root_);
            const EntryTable table(root);
            if (table.Leaf() || table.Count() > 0) {
                return;
            }
            child = TailOf(root);
        }
        const PageRef content = pager_.Read(child);
        std::ranges::copy(content.Bytes(), pager_.Write(root_).begin());
        FreePage(child);
    }
}

}  // namespace tavrel::jet
