#include "jet/engine/check/RowList.h"

#include <algorithm>

#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

std::size_t RowList::Find(RowPointer slot) const {
    const std::uint32_t wanted = slot.ToU32();
    const auto found =
        std::lower_bound(rows_.begin(), rows_.end(), wanted,
                         [](const Place& place, std::uint32_t value) { return place.slot < value; });
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
