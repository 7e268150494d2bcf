#include "jet/engine/check/RowList.h"

#include <algorithm>

#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

std::size_t RowList::Find(RowPointer slot, std::size_t near) const {
    const std::uint32_t wanted = slot.ToU32();
    std::size_t step = 1;
    while (near + step < rows_.size() && rows_[near + step].slot <= wanted) {
        near += step;
        step *= 2;
    }
    const auto from = rows_.begin() + static_cast<std::ptrdiff_t>(std::min(near, rows_.size()));
    const auto to = rows_.begin() + static_cast<std::ptrdiff_t>(std::min(near + step, rows_.size()));
    const auto found = std::lower_bound(
        from, to, wanted, [](const Place& place, std::uint32_t value) { return place.slot < value; });
    return found != rows_.end() && found->slot == wanted ? static_cast<std::size_t>(found - rows_.begin())
                                                         : npos;
}

ByteView RowReader::Read(RowPointer at) {
    if (page_.empty() || number_ != at.page) {
        page_.assign(1, pager_.Read(at.page));
        number_ = at.page;
    }
    return DataPageView(page_.front()).At(at.row).row;
}

}  // namespace tavrel::jet::check
