#include "jet/index/IndexBuilder.h"

#include <algorithm>

#include "jet/index/IndexPage.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

/// What goes on one page: entries of the arena (leaf), or pages of the level below (node).
struct Run {
    std::size_t first = 0;
    std::size_t count = 0;
    std::size_t prefix = 0;
};

/// A page that is written already, and the place of its last entry in the arena.
struct Child {
    PageNumber page = 0;
    std::size_t lastEntry = 0;
};

/// Puts a page's bytes together.
class PageComposer {
  public:
    PageComposer(std::uint8_t type, PageNumber owner, unsigned level) {
        page_[0] = type;
        page_[1] = 0x01;
        page_[0x1A] = static_cast<std::uint8_t>(level);
        PutU32(page_, 0x04, owner);
    }

    void Link(PageNumber previous, PageNumber next, PageNumber tail) {
        PutU32(page_, 0x0C, previous);
        PutU32(page_, 0x10, next);
        PutU32(page_, 0x14, tail);
    }

    void SetPrefix(std::size_t prefix) { PutU16(page_, 0x18, static_cast<std::uint16_t>(prefix)); }

    void Add(ByteView bytes) {
        std::ranges::copy(bytes, page_.begin() + static_cast<std::ptrdiff_t>(kIndexEntries + used_));
        used_ += bytes.size();
    }

    void EndEntry() { page_[0x1B + used_ / 8] |= static_cast<std::uint8_t>(1U << used_ % 8); }

    const Page& Finish() {
        PutU16(page_, 0x02, static_cast<std::uint16_t>(kIndexRoom - used_));
        return page_;
    }

  private:
    Page page_{};
    std::size_t used_ = 0;
};

/// How many of the first `most` bytes of `left` begin `right` too; mostly it is all of them.
std::size_t CommonLength(ByteView left, ByteView right, std::size_t most) {
    if (right.size() >= most && std::memcmp(left.data(), right.data(), most) == 0) {
        return most;
    }
    const auto [end, other] = std::ranges::mismatch(left.first(most), right);
    return static_cast<std::size_t>(end - left.first(most).begin());
}

/// As many entries as fit, the shared front of later ones left out if that makes more fit.
Run NextLeaf(const EntryArena& entries, std::size_t first) {
    Run run{first, 0, 0};
    if (first == entries.Size()) {
        return run;
    }
    std::size_t whole = entries.Entry(first).size();
    std::size_t prefix = whole;
    for (run.count = 1; first + run.count < entries.Size(); ++run.count) {
        const ByteView next = entries.Entry(first + run.count);
        const std::size_t shared = CommonLength(entries.Entry(first), next, prefix);
        if (whole + next.size() - shared * run.count > kIndexRoom) {
            break;
        }
        whole += next.size();
        prefix = shared;
    }
    run.prefix = whole > kIndexRoom ? prefix : 0;
    return run;
}

std::vector<Run> LeafRuns(const EntryArena& entries) {
    std::vector<Run> runs{NextLeaf(entries, 0)};
    for (std::size_t done = runs.back().count; done < entries.Size(); done += runs.back().count) {
        runs.push_back(NextLeaf(entries, done));
    }
    return runs;
}

/// A node names every child but its last, the tail, with an entry.
std::vector<Run> NodeRuns(const EntryArena& entries, const std::vector<Child>& children) {
    std::vector<Run> runs;
    for (std::size_t done = 0; done < children.size(); done += runs.back().count) {
        std::size_t used = 0;
        std::size_t count = 1;
        for (; done + count < children.size(); ++count) {
            used += entries.Entry(children[done + count - 1].lastEntry).size() + sizeof(PageNumber);
            if (used > kIndexRoom) {
                break;
            }
        }
        runs.push_back({done, count, 0});
    }
    // A last node with a tail only would have no entry: its neighbour gives one away if that leaves it one.
    if (runs.size() > 1 && runs.back().count == 1 && runs[runs.size() - 2].count > 2) {
        --runs[runs.size() - 2].count;
        --runs.back().first;
        ++runs.back().count;
    }
    return runs;
}

class TreeWriter {
  public:
    TreeWriter(Pager& pager, PageAllocator& allocator, PageNumber tablePage, RowPointer map, PageNumber root,
               const EntryArena& entries)
        : pager_(pager),
          allocator_(allocator),
          owner_(tablePage),
          map_(map),
          root_(root),
          entries_(entries) {}

    PageNumber Write() {
        std::vector<Child> children = WriteLevel(LeafRuns(entries_), 0, {});
        for (unsigned level = 1; children.size() > 1; ++level) {
            children = WriteLevel(NodeRuns(entries_, children), level, children);
        }
        return children.front().page;
    }

  private:
    /// `children` is the level below, empty for leaves.
    std::vector<Child> WriteLevel(const std::vector<Run>& runs, unsigned level,
                                  const std::vector<Child>& children) {
        const std::vector<PageNumber> pages = TakePages(runs.size());
        std::vector<Child> written;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            const std::size_t last = runs[i].first + runs[i].count - 1;
            const PageNumber previous = i == 0 ? 0 : pages[i - 1];
            const PageNumber next = i + 1 == runs.size() ? 0 : pages[i + 1];
            PageComposer page(level == 0 ? kPageTypeLeaf : kPageTypeNode, owner_, level);
            page.Link(previous, next, level == 0 ? 0 : children[last].page);
            if (level == 0) {
                FillLeaf(page, runs[i]);
            } else {
                FillNode(page, runs[i], children);
            }
            pager_.Write(pages[i]) = page.Finish();
            written.push_back({pages[i], level == 0 ? last : children[last].lastEntry});
        }
        return written;
    }

    void FillLeaf(PageComposer& page, const Run& run) const {
        page.SetPrefix(run.prefix);
        for (std::size_t i = 0; i < run.count; ++i) {
            page.Add(entries_.Entry(run.first + i).subspan(i == 0 ? 0 : run.prefix));
            page.EndEntry();
        }
    }

    void FillNode(PageComposer& page, const Run& run, const std::vector<Child>& children) const {
        for (std::size_t i = 0; i + 1 < run.count; ++i) {
            const Child& child = children[run.first + i];
            ByteVector number;
            AppendU32Be(number, child.page);
            page.Add(entries_.Entry(child.lastEntry));
            page.Add(number);
            page.EndEntry();
        }
    }

    /// A level of one page is the root.
    std::vector<PageNumber> TakePages(std::size_t count) {
        if (count == 1 && root_ != 0) {
            return {root_};
        }
        std::vector<PageNumber> pages(count);
        for (PageNumber& page : pages) {
            page = allocator_.Allocate();
            allocator_.Add(map_, page);
        }
        return pages;
    }

    Pager& pager_;
    PageAllocator& allocator_;
    PageNumber owner_;
    RowPointer map_;
    PageNumber root_;
    const EntryArena& entries_;
};

}  // namespace

BuiltIndex BuildIndex(Pager& pager, PageAllocator& allocator, PageNumber tablePage, RowPointer map,
                      PageNumber root, EntryArena& entries) {
    entries.Sort();
    const PageNumber written = TreeWriter(pager, allocator, tablePage, map, root, entries).Write();
    return {written, entries.DistinctKeys()};
}

}  // namespace tavrel::jet
