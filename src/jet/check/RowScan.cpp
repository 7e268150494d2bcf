#include "jet/check/RowScan.h"

#include "jet/check/Places.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet::check {

namespace {
/// Places of strange pointers that are kept.  No finding is told that often; further ones of a file that bad
/// are passed over.
constexpr std::size_t kStrangeLimit = std::size_t{1} << 16;
}  // namespace

RowList RowScan::Run(const Visitor& visitor) {
    for (std::size_t place = 0; place < slots_.Pages().size(); ++place) {
        ScanPage(place, visitor);
    }
    CheckTargets();
    return std::move(rows_);
}

void RowScan::ScanPage(std::size_t place, const Visitor& visitor) {
    const PageNumber page = slots_.Pages()[place];
    const PageRef bytes = pager_.Read(page);
    const DataPageView view(bytes);
    for (unsigned i = 0; i < view.SlotCount(); ++i) {
        const Slot slot = view.At(i);
        const RowPointer name{page, static_cast<std::uint8_t>(i)};
        const std::size_t number = slots_.First(place) + i;
        if (slot.flags == 0) {
            Visit(name, number, slot.row, visitor);
        } else if (slot.flags == kSlotMoved) {
            FollowPointer(name, number, slot.row, visitor);
        } else if (slot.flags == kSlotHidden) {
            ++hidden_;
        }
    }
}

void RowScan::FollowPointer(RowPointer slot, std::size_t number, ByteView row, const Visitor& visitor) {
    if (row.size() < 4) {
        log_.Add(FindingKind::RowPointerShort, RowPlaceText(table_, slot));
        return;
    }
    const RowPointer target = RowPointer::FromU32(U32(row, 0));
    if (!IsFirstPointer(target)) {
        rows_.Add(number);  // CheckTargets tells; the row is not examined again
        rows_.Spoil(number);
        return;
    }
    if (slots_.Find(target) != SlotNumbers::npos) {
        const PageRef page = pager_.Read(target.page);
        const Slot there = DataPageView(page).At(target.row);
        if (there.flags == kSlotHidden) {
            ++moved_;
            Visit(slot, number, there.row, visitor);
            return;
        }
    }
    log_.Add(FindingKind::RowPointerTarget, RowPlaceText(table_, slot), {PointerText(target)});
}

/// Counts the pointers that lead to a place.
bool RowScan::IsFirstPointer(RowPointer target) {
    const std::size_t number = slots_.Find(target);
    if (target_.empty()) {
        target_.resize(slots_.Size());
    }
    if (number != SlotNumbers::npos && !target_[number]) {
        target_[number] = true;
        return true;
    }
    if (strange_.size() == kStrangeLimit && !strange_.contains(target.ToU32())) {
        return number == SlotNumbers::npos;
    }
    const bool first = ++strange_[target.ToU32()] == 1;
    return first && number == SlotNumbers::npos;
}

void RowScan::Visit(RowPointer slot, std::size_t number, ByteView row, const Visitor& visitor) {
    rows_.Add(number);
    bool readable = false;
    Guard(
        log_, FindingKind::RowDamaged, [&] { return RowPlaceText(table_, slot); },
        [&] { readable = visitor(slot, row); });
    if (!readable) {
        rows_.Spoil(number);
    }
}

void RowScan::CheckTargets() {
    if (hidden_ == moved_ && strange_.empty()) {
        return;
    }
    for (std::size_t place = 0; place < slots_.Pages().size(); ++place) {
        CheckTargets(place);
    }
}

void RowScan::CheckTargets(std::size_t place) {
    const PageRef bytes = pager_.Read(slots_.Pages()[place]);
    const DataPageView view(bytes);
    for (unsigned i = 0; i < view.SlotCount(); ++i) {
        if (view.At(i).flags != kSlotHidden) {
            continue;
        }
        const RowPointer slot{slots_.Pages()[place], static_cast<std::uint8_t>(i)};
        const auto others = strange_.find(slot.ToU32());
        const std::uint32_t count = (!target_.empty() && target_[slots_.First(place) + i] ? 1 : 0) +
                                    (others == strange_.end() ? 0 : others->second);
        if (count != 1) {
            log_.Add(FindingKind::MovedRow, RowPlaceText(table_, slot), {Number(count)});
        }
    }
}

}  // namespace tavrel::jet::check
