#include "jet/check/IndexTree.h"

#include <algorithm>

#include "jet/check/Places.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

namespace {

constexpr unsigned kMaxDepth = 255;  // the level is a byte
/// A node's entries with their prefixes put back can be far longer than the page; no real path comes near
/// this.
constexpr std::size_t kMaxHeldBytes = std::size_t{64} << 20;

bool Less(ByteView a, ByteView b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
}

std::size_t EntryBytes(const IndexPageContent& page) {
    std::size_t bytes = 0;
    for (const ByteVector& entry : page.entries) {
        bytes += entry.size() + sizeof(ByteVector);
    }
    return bytes;
}

}  // namespace

bool IndexTree::Walk(const EntryVisitor& visitor) {
    visitor_ = &visitor;
    bool whole = false;
    Guard(log_, FindingKind::IndexUnreadable, where_, [&] {
        WalkPage(index_.root, 0, std::nullopt, std::nullopt);
        whole = true;
    });
    if (whole) {
        if (lastLeafNext_ != 0) {
            log_.Add(FindingKind::IndexLeafLinks, where_, {Number(lastLeaf_), "", Number(lastLeafNext_)});
        }
        if (depthsDiffer_) {
            log_.Add(FindingKind::IndexDepth, where_);
        }
        if (leafDepth_ && rootLevel_ != *leafDepth_) {
            log_.Add(FindingKind::IndexLevel, where_, {Number(index_.root), Number(rootLevel_)});
        }
    }
    CheckMap();
    return whole;
}

void IndexTree::Replay(const EntryVisitor& visitor) const {
    for (const PageNumber number : reached_) {
        const IndexPageContent page = ReadIndexPage(context_.pager.Read(number));
        for (const ByteVector& entry : page.entries) {
            if (page.leaf) {
                visitor(entry);
            }
        }
    }
}

void IndexTree::WalkPage(PageNumber number, unsigned depth, const Bound& low, const Bound& high) {
    if (number < context_.pager.PageCount() && !context_.walkedIndexPages.Insert(number)) {
        ThrowDamaged("페이지 " + Number(number) + "이(가) 트리에 두 번 나옴");
    }
    const PageRef bytes = context_.pager.Read(number);
    const IndexPageContent page = ReadIndexPage(bytes);
    reached_.push_back(number);
    CheckFields(number, bytes, page);
    if (depth == 0) {
        rootLevel_ = page.level;
    }
    if (page.leaf) {
        WalkLeaf(number, page, depth, low, high);
    } else {
        WalkNode(number, page, depth, low, high);
    }
}

void IndexTree::WalkNode(PageNumber number, const IndexPageContent& page, unsigned depth, const Bound& low,
                         const Bound& high) {
    const std::size_t bytes = EntryBytes(page);
    heldBytes_ += bytes;
    if (depth == kMaxDepth || heldBytes_ > kMaxHeldBytes) {
        ThrowDamaged("트리가 너무 깊음");
    }
    CheckNodeLinks(number, page);
    Bound from = low;
    for (const ByteVector& entry : page.entries) {
        const ByteView bound = NodeBound(entry);
        const Bound to = ByteVector(bound.begin(), bound.end());
        WalkPage(NodeChild(entry), depth + 1, from, to);
        from = to;
    }
    if (page.tail == 0) {
        log_.Add(FindingKind::IndexTail, where_, {Number(number), Number(0)});
    } else {
        WalkPage(page.tail, depth + 1, from, high);
    }
    heldBytes_ -= bytes;
}

void IndexTree::WalkLeaf(PageNumber number, const IndexPageContent& page, unsigned depth, const Bound& low,
                         const Bound& high) {
    depthsDiffer_ |= leafDepth_.value_or(depth) != depth;
    leafDepth_ = leafDepth_.value_or(depth);
    if (page.tail != 0) {
        log_.Add(FindingKind::IndexTail, where_, {Number(number), Number(page.tail)});
    }
    CheckLeafLinks(number, page);
    bool inRange = true;
    for (const ByteVector& entry : page.entries) {
        inRange &= (!low || Less(*low, entry)) && (!high || !Less(*high, entry));
        CheckOrder(entry);
        (*visitor_)(entry);
    }
    if (!inRange) {
        log_.Add(FindingKind::IndexRange, where_, {Number(number)});
    }
}

void IndexTree::CheckFields(PageNumber number, ByteView bytes, const IndexPageContent& page) {
    if (page.owner != tablePage_ || U8(bytes, 1) != 1) {
        log_.Add(FindingKind::IndexPageOwner, where_, {Number(number), Number(page.owner)});
    }
    if (page.used + page.freeField != kIndexRoom) {
        log_.Add(FindingKind::IndexPageFree, where_, {Number(number), Number(page.freeField)});
    }
    if (page.reserved != 0) {
        log_.Add(FindingKind::IndexPageReserved, where_, {Number(number)});
    }
    if ((page.level == 0) != page.leaf) {
        log_.Add(FindingKind::IndexLevel, where_, {Number(number), Number(page.level)});
    }
}

void IndexTree::CheckNodeLinks(PageNumber number, const IndexPageContent& page) {
    for (const PageNumber sibling : {page.previous, page.next}) {
        if (sibling != 0 && U8(context_.pager.Read(sibling), 0) != kPageTypeNode) {
            log_.Add(FindingKind::IndexNodeLinks, where_, {Number(number), Number(sibling)});
        }
    }
}

/// Leaves come in key order, so each must name the one before and be named by it.
void IndexTree::CheckLeafLinks(PageNumber number, const IndexPageContent& page) {
    const bool namedByLast = lastLeaf_ == 0 || lastLeafNext_ == number;
    if (page.previous != lastLeaf_ || !namedByLast) {
        log_.Add(FindingKind::IndexLeafLinks, where_,
                 {Number(number), Number(page.previous), Number(page.next)});
    }
    lastLeaf_ = number;
    lastLeafNext_ = page.next;
}

/// Entries ascend strictly over all leaves; the first place where they do not is told.
void IndexTree::CheckOrder(ByteView entry) {
    if (haveEntry_ && !orderBroken_ && !Less(lastEntry_, entry)) {
        orderBroken_ = true;
        log_.Add(FindingKind::IndexOrder, where_, {PointerText(LeafRow(entry))});
    }
    lastEntry_.assign(entry.begin(), entry.end());
    haveEntry_ = true;
}

/// The map of the index and the pages of the tree are the same.
void IndexTree::CheckMap() {
    const std::vector<PageNumber> mapped = context_.maps.Read(index_.map, where_ + " 사용 지도");
    const PageOwners::OwnerId owner = context_.owners.Register(where_);
    for (const PageNumber page : mapped) {
        context_.owners.Claim(page, owner);
    }
    std::vector<PageNumber> reached = reached_;
    std::ranges::sort(reached);
    std::vector<PageNumber> different;
    std::set_symmetric_difference(mapped.begin(), mapped.end(), reached.begin(), reached.end(),
                                  std::back_inserter(different));
    if (!different.empty()) {
        log_.Add(FindingKind::IndexMap, where_, {Number(different.front())});
    }
}

}  // namespace tavrel::jet::check
