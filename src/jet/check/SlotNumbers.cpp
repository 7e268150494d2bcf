#include "jet/check/SlotNumbers.h"

#include <algorithm>

namespace tavrel::jet::check {

void SlotNumbers::AddPage(PageNumber page, unsigned slots) {
    pages_.push_back(page);
    firsts_.push_back(firsts_.back() + slots);
}

std::size_t SlotNumbers::Find(RowPointer slot) const {
    const auto page = std::ranges::lower_bound(pages_, slot.page);
    if (page == pages_.end() || *page != slot.page) {
        return npos;
    }
    const auto place = static_cast<std::size_t>(page - pages_.begin());
    const std::size_t number = First(place) + slot.row;
    return number < First(place + 1) ? number : npos;
}

}  // namespace tavrel::jet::check
