#include "jet/storage/RowStore.h"

#include <algorithm>

namespace tavrel::jet {

namespace {

/// How many of the pages in a free-space map are looked at: in old files the map names many that are all but
/// full.
constexpr std::size_t kMaxCandidates = 16;
/// A page with that much room stays in the free-space map although one row did not fit.
constexpr unsigned kRoomWorthKeeping = kPageSize / 4;

}  // namespace

RowStore::RowStore(Pager& pager, PageAllocator& allocator, std::uint32_t owner, RowPointer owned,
                   RowPointer free)
    : pager_(pager), allocator_(allocator), owner_(owner), owned_(owned), free_(free) {}

RowPointer RowStore::Append(ByteView row) {
    const PageNumber page = PageFor(row.size());
    return {page, DataPageEditor(pager_.Write(page)).Append(row)};
}

PageNumber RowStore::PageFor(std::size_t length) {
    if (current_ != 0) {
        if (DataPageEditor(pager_.Write(current_)).Fits(length)) {
            return current_;
        }
        LeaveCurrent();
    }
    FindCandidates();
    while (!candidates_.empty()) {
        const PageNumber page = candidates_.back();
        candidates_.pop_back();
        if (TakeCandidate(page, length)) {
            return current_ = page;
        }
    }
    current_ = TakePage(0);
    if (free_.page != 0) {
        allocator_.Add(free_, current_);
    }
    return current_;
}

void RowStore::FindCandidates() {
    if (haveCandidates_) {
        return;
    }
    haveCandidates_ = true;
    if (free_.page == 0) {
        return;
    }
    candidates_ = ReadUsageMap(pager_, free_).pages;
    if (candidates_.size() > kMaxCandidates) {
        candidates_.erase(candidates_.begin(), candidates_.end() - kMaxCandidates);
    }
}

bool RowStore::TakeCandidate(PageNumber page, std::size_t length) {
    const PageRef held = pager_.Read(page);
    const DataPageView view(held);
    const bool fits = view.SlotCount() < kMaxSlots && length + 2 <= view.FreeBytes();
    if (view.Owner() != owner_ || !view.MayShare() || !fits) {
        return false;
    }
    Page& image = before_[page];
    std::copy(held.Bytes().begin(), held.Bytes().end(), image.begin());
    return true;
}

/// The present page had no room for a row.
void RowStore::LeaveCurrent() {
    const PageRef held = pager_.Read(current_);
    const DataPageView view(held);
    if (free_.page != 0 && (view.FreeBytes() < kRoomWorthKeeping || view.SlotCount() >= kMaxSlots)) {
        allocator_.Remove(free_, current_);
        left_.push_back(current_);
    }
    current_ = 0;
}

PageNumber RowStore::TakePage(std::uint32_t chainMark) {
    const PageNumber page = allocator_.Allocate();
    DataPageEditor(pager_.Write(page)).Format(owner_, chainMark);
    taken_.push_back(page);
    allocator_.Add(owned_, page);
    return page;
}

PageNumber RowStore::TakeAlone(std::uint32_t chainMark) {
    return TakePage(chainMark);
}

RowPointer RowStore::PutAlone(PageNumber page, ByteView row) {
    return {page, DataPageEditor(pager_.Write(page)).Append(row)};
}

void RowStore::Undo() {
    for (const PageNumber page : left_) {
        allocator_.Add(free_, page);
    }
    for (const PageNumber page : taken_) {
        if (free_.page != 0) {
            allocator_.Remove(free_, page);
        }
        allocator_.Remove(owned_, page);
        allocator_.Free(page);
    }
    for (const auto& [page, image] : before_) {
        pager_.Write(page) = image;
    }
    Keep();
    current_ = 0;
    haveCandidates_ = false;
}

void RowStore::Keep() {
    before_.clear();
    taken_.clear();
    left_.clear();
    if (current_ != 0) {
        const PageRef held = pager_.Read(current_);
        std::copy(held.Bytes().begin(), held.Bytes().end(), before_[current_].begin());
    }
}

}  // namespace tavrel::jet
