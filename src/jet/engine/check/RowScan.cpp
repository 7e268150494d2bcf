#include "jet/engine/check/RowScan.h"

#include <algorithm>

#include "jet/engine/check/Places.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

RowList RowScan::Run(const Visitor& visitor) {
    for (const PageNumber page : pages_) {
        ScanPage(page, visitor);
    }
    CheckTargets();
    return std::move(rows_);
}

void RowScan::ScanPage(PageNumber number, const Visitor& visitor) {
    const PageRef page = pager_.Read(number);
    const DataPageView view(page);
    for (unsigned i = 0; i < view.SlotCount(); ++i) {
        const Slot slot = view.At(i);
        const RowPointer name{number, static_cast<std::uint8_t>(i)};
        if (slot.flags == 0) {
            Visit(name, name, slot.row, visitor);
        } else if (slot.flags == kSlotMoved) {
            FollowPointer(name, slot.row, visitor);
        } else if (slot.flags == kSlotHidden) {
            hidden_.push_back(name);
        }
    }
}

void RowScan::FollowPointer(RowPointer slot, ByteView row, const Visitor& visitor) {
    if (row.size() < 4) {
        log_.Add(FindingKind::RowPointerShort, RowPlaceText(table_, slot));
        return;
    }
    const RowPointer target = RowPointer::FromU32(U32(row, 0));
    if (++pointers_[target.ToU32()] > 1) {
        rows_.Append(slot, target);  // CheckTargets tells; the row is not examined again
        rows_.SpoilLast();
        return;
    }
    if (std::binary_search(pages_.begin(), pages_.end(), target.page)) {
        const PageRef page = pager_.Read(target.page);
        const DataPageView view(page);
        if (target.row < view.SlotCount() && view.At(target.row).flags == kSlotHidden) {
            Visit(slot, target, view.At(target.row).row, visitor);
            return;
        }
    }
    log_.Add(FindingKind::RowPointerTarget, RowPlaceText(table_, slot), {PointerText(target)});
}

void RowScan::Visit(RowPointer slot, RowPointer at, ByteView row, const Visitor& visitor) {
    rows_.Append(slot, at);
    bool readable = false;
    Guard(
        log_, FindingKind::RowDamaged, [&] { return RowPlaceText(table_, slot); },
        [&] { readable = visitor(slot, row); });
    if (!readable) {
        rows_.SpoilLast();
    }
}

void RowScan::CheckTargets() {
    for (const RowPointer slot : hidden_) {
        const auto found = pointers_.find(slot.ToU32());
        const std::uint32_t count = found == pointers_.end() ? 0 : found->second;
        if (count != 1) {
            log_.Add(FindingKind::MovedRow, RowPlaceText(table_, slot), {Number(count)});
        }
    }
}

}  // namespace tavrel::jet::check
