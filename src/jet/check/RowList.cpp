#include "jet/check/RowList.h"

#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

void RowList::Add(std::size_t slot) {
    if (live_.empty()) {
        live_.resize(slots_->Size());
    }
    live_[slot] = true;
    ++rows_;
}

void RowList::Spoil(std::size_t slot) {
    spoiled_.resize(slots_->Size());
    spoiled_[slot] = true;
}

std::size_t RowList::Find(RowPointer slot) const {
    const std::size_t number = slots_->Find(slot);
    return number != npos && Has(number) ? number : npos;
}

ByteView RowReader::Read(RowPointer slot) {
    const Slot named = DataPageView(Fetch(page_, number_, slot.page)).At(slot.row);
    if (named.flags != kSlotMoved) {
        return named.row;
    }
    const RowPointer at = RowPointer::FromU32(U32(named.row, 0));
    return DataPageView(Fetch(moved_, movedNumber_, at.page)).At(at.row).row;
}

ByteView RowReader::Fetch(std::vector<PageRef>& page, PageNumber& number, PageNumber wanted) {
    if (page.empty() || number != wanted) {
        page.assign(1, pager_.Read(wanted));
        number = wanted;
    }
    return page.front();
}

}  // namespace tavrel::jet::check
