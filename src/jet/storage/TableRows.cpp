#include "jet/storage/TableRows.h"

#include <algorithm>
#include <string>

namespace tavrel::jet {

namespace {

/// A page with less room is full: no row to speak of goes in.
constexpr unsigned kFullBelow = 64;

}  // namespace

TableRows::TableRows(Pager& pager, PageAllocator& allocator, std::uint32_t owner, RowPointer owned,
                     RowPointer free)
    : pager_(pager), allocator_(allocator), owner_(owner), owned_(owned), free_(free) {}

void TableRows::Reset() {
    haveCandidates_ = false;
    candidates_.clear();
    current_ = 0;
}

RowPointer TableRows::Insert(ByteView row) {
    if (free_.page == 0) {
        return InsertAlone(row, 0);
    }
    const PageNumber page = PageFor(row.size());
    return {page, DataPageEditor(pager_.Write(page)).Append(row)};
}

RowPointer TableRows::InsertAlone(ByteView row, std::uint32_t chainMark) {
    const PageNumber page = NewPage(chainMark);
    return {page, DataPageEditor(pager_.Write(page)).Append(row)};
}

/// A page with room for a row, made when there is none.
PageNumber TableRows::PageFor(std::size_t length) {
    if (current_ != 0 && MakeFit(current_, length, true)) {
        return current_;
    }
    FindCandidates();
    while (!candidates_.empty()) {
        current_ = candidates_.back();
        candidates_.pop_back();
        if (MakeFit(current_, length, false)) {
            return current_;
        }
    }
    current_ = NewPage(0);
    allocator_.Add(free_, current_);
    return current_;
}

/// True when the page takes the row, its deleted rows' space used when needed.  A full page leaves the
/// free-space map.  `known`: rows have been put there already, so that it is shared.
bool TableRows::MakeFit(PageNumber page, std::size_t length, bool known) {
    unsigned room = 0;
    unsigned slots = 0;
    {
        const PageRef held = pager_.Read(page);
        const DataPageView view(held);
        if (view.Owner() != owner_ || !(known || view.MayShare())) {
            return false;
        }
        room = view.FreeBytes();
        slots = view.SlotCount();
    }
    if (slots < kMaxSlots && length + 2 <= room) {
        return true;
    }
    DataPageEditor editor(pager_.Write(page));
    const unsigned most = slots < kMaxSlots ? editor.RoomAfterTidy() : 0;
    if (length + 2 <= most) {
        editor.Tidy();
        return true;
    }
    if (most < kFullBelow) {
        allocator_.Remove(free_, page);
    }
    return false;
}

void TableRows::FindCandidates() {
    if (!haveCandidates_) {
        haveCandidates_ = true;
        candidates_ = ReadUsageMap(pager_, free_).pages;
        std::erase(candidates_, current_);
    }
}

PageNumber TableRows::NewPage(std::uint32_t chainMark) {
    const PageNumber page = allocator_.Allocate();
    DataPageEditor(pager_.Write(page)).Format(owner_, chainMark);
    allocator_.Add(owned_, page);
    return page;
}

void TableRows::Update(RowPointer at, ByteView row) {
    const PageRef held = pager_.Read(at.page);
    const Slot slot = DataPageView(held).At(at.row);
    if ((slot.flags & kSlotHidden) != 0) {
        ThrowDamaged("지워진 행을 바꾸려 함");
    }
    const bool moved = slot.flags == kSlotMoved;
    const RowPointer target = moved ? RowPointer::FromU32(U32(slot.row, 0)) : at;
    if (moved && DataPageEditor(pager_.Write(target.page)).Replace(target.row, row, kSlotHidden)) {
        return;
    }
    if (DataPageEditor(pager_.Write(at.page)).Replace(at.row, row, 0)) {
        if (moved) {
            DeleteSlot(target);
        }
        return;
    }
    // Rule 1: the slot keeps its length at least, so that its pointer fits.
    if (moved) {
        DeleteSlot(target);
    }
    const RowPointer fresh = MoveOut(row, at.page);
    ByteVector pointer;
    AppendU32(pointer, fresh.ToU32());
    if (!DataPageEditor(pager_.Write(at.page)).Replace(at.row, pointer, kSlotMoved)) {
        ThrowDamaged("행을 옮길 자리가 없음");
    }
}

RowPointer TableRows::MoveOut(ByteView row, PageNumber from) {
    PageNumber page = PageFor(row.size());
    if (page == from) {
        // What room it has others of its rows need.
        page = NewPage(0);
        allocator_.Add(free_, page);
        current_ = page;
    }
    return {page, DataPageEditor(pager_.Write(page)).Append(row, kSlotHidden)};
}

void TableRows::Delete(RowPointer at) {
    std::optional<RowPointer> target;
    {
        const PageRef held = pager_.Read(at.page);
        const Slot slot = DataPageView(held).At(at.row);
        if ((slot.flags & kSlotHidden) != 0) {
            ThrowDamaged("이미 지워진 행 " + std::to_string(at.page) + ":" + std::to_string(at.row));
        }
        if (slot.flags == kSlotMoved) {
            target = RowPointer::FromU32(U32(slot.row, 0));
        }
    }
    DeleteSlot(at);
    if (target) {
        DeleteSlot(*target);
    }
}

/// Rule 3.
void TableRows::DeleteSlot(RowPointer at) {
    DataPageEditor editor(pager_.Write(at.page));
    editor.Delete(at.row);
    if (editor.LiveRows() == 0) {
        allocator_.Remove(owned_, at.page);
        if (free_.page != 0) {
            allocator_.Remove(free_, at.page);
        }
        allocator_.Free(at.page);
        std::erase(candidates_, at.page);
        current_ = current_ == at.page ? 0 : current_;
        return;
    }
    const bool hasNumbers = DataPageView(pager_.Read(at.page)).SlotCount() < kMaxSlots;
    if (free_.page != 0 && hasNumbers && at.page != current_) {
        allocator_.Add(free_, at.page);
        if (haveCandidates_ && (candidates_.empty() || candidates_.back() != at.page)) {
            candidates_.push_back(at.page);
        }
    }
}

}  // namespace tavrel::jet
