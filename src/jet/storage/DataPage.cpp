#include "jet/storage/DataPage.h"

#include <algorithm>
#include <cassert>
#include <string>

namespace tavrel::jet {

namespace {
constexpr std::uint16_t kStartMask = 0x1FFF;
}

DataPageView::DataPageView(ByteView page) : page_(page), count_(U16(page, 0x0C)) {
    if (page[0] != kPageTypeData) {
        ThrowDamaged("데이터 페이지가 아님");
    }
    if (kDataHeader + 2 * std::size_t{count_} > kPageSize) {
        ThrowDamaged("페이지의 행 수가 너무 많음");
    }
}

Slot DataPageView::At(unsigned row) const {
    if (row >= count_) {
        ThrowDamaged("페이지에 없는 행 " + std::to_string(row));
    }
    const std::uint16_t raw = U16(page_, kDataHeader + 2 * row);
    const std::size_t start = raw & kStartMask;
    const std::size_t end = row == 0 ? kPageSize : U16(page_, kDataHeader + 2 * (row - 1)) & kStartMask;
    if (end > kPageSize || start > end || start < kDataHeader + 2 * std::size_t{count_}) {
        ThrowDamaged("행 " + std::to_string(row) + "의 위치가 잘못됨");
    }
    return {static_cast<std::uint16_t>(raw & 0xC000), page_.subspan(start, end - start)};
}

void DataPageEditor::Format(std::uint32_t owner, std::uint32_t chainMark) {
    page_.fill(0);
    page_[0] = kPageTypeData;
    page_[1] = 1;
    PutU16(page_, 2, kPageSize - kDataHeader);
    PutU32(page_, 4, owner);
    PutU32(page_, 8, chainMark);
}

bool DataPageEditor::Fits(std::size_t length) const {
    return U16(page_, 0x0C) < kMaxSlots && length + 2 <= U16(page_, 2);
}

std::uint8_t DataPageEditor::Append(ByteView row, std::uint16_t flags) {
    assert(Fits(row.size()));
    const unsigned count = U16(page_, 0x0C);
    const std::size_t end =
        count == 0 ? kPageSize : U16(page_, kDataHeader + 2 * (count - 1)) & std::size_t{kStartMask};
    const std::size_t start = end - row.size();
    std::copy(row.begin(), row.end(), page_.begin() + static_cast<std::ptrdiff_t>(start));
    PutU16(page_, kDataHeader + 2 * count, static_cast<std::uint16_t>(start | flags));
    PutU16(page_, 0x0C, static_cast<std::uint16_t>(count + 1));
    PutU16(page_, 2, static_cast<std::uint16_t>(start - kDataHeader - 2 * (count + 1)));
    return static_cast<std::uint8_t>(count);
}

namespace {

/// What a slot keeps when its page is laid out anew: a moved row no more than its pointer, a deleted one
/// nothing.
ByteView Kept(const Slot& slot) {
    constexpr std::size_t kPointerBytes = 4;
    switch (slot.flags) {
        case kSlotDeleted:
            return {};
        case kSlotMoved:
            return slot.row.first(std::min(slot.row.size(), kPointerBytes));
        default:
            return slot.row;
    }
}

}  // namespace

bool DataPageEditor::Replace(std::uint8_t row, ByteView bytes, std::uint16_t flags) {
    const SlotContent replacement{row, bytes, flags};
    const Slot slot = DataPageView(page_).At(row);
    if (slot.row.size() != bytes.size() && RoomAfterTidy() + Kept(slot).size() < bytes.size()) {
        return false;
    }
    ReplaceMany({&replacement, 1});
    return true;
}

void DataPageEditor::ReplaceMany(std::span<const SlotContent> slots) {
    const DataPageView view(page_);
    std::vector<SlotContent> resized;
    for (const SlotContent& slot : slots) {
        const ByteView old = view.At(slot.row).row;
        if (old.size() == slot.bytes.size()) {
            PutInPlace(static_cast<std::size_t>(old.data() - page_.data()), slot);
        } else {
            resized.push_back(slot);
        }
    }
    if (!resized.empty()) {
        LayOut(resized);
    }
}

void DataPageEditor::PutInPlace(std::size_t start, const SlotContent& slot) {
    std::ranges::copy(slot.bytes, page_.begin() + static_cast<std::ptrdiff_t>(start));
    PutU16(page_, kDataHeader + 2 * std::size_t{slot.row}, static_cast<std::uint16_t>(start | slot.flags));
}

void DataPageEditor::Delete(std::uint8_t row) {
    const std::size_t place = kDataHeader + 2 * std::size_t{row};
    PutU16(page_, place, static_cast<std::uint16_t>((U16(page_, place) & kStartMask) | kSlotDeleted));
}

void DataPageEditor::Tidy() {
    LayOut({});
}

unsigned DataPageEditor::RoomAfterTidy(const DataPageView& view) {
    std::size_t used = kDataHeader + 2 * std::size_t{view.SlotCount()};
    for (unsigned row = 0; row < view.SlotCount(); ++row) {
        used += Kept(view.At(row)).size();
    }
    return static_cast<unsigned>(kPageSize - used);
}

unsigned DataPageEditor::LiveRows() const {
    const DataPageView view(page_);
    unsigned live = 0;
    for (unsigned row = 0; row < view.SlotCount(); ++row) {
        live += view.At(row).flags != kSlotDeleted ? 1 : 0;
    }
    return live;
}

/// Writes all rows anew from the end of the page downward, some of them (ascending) with other bytes.
void DataPageEditor::LayOut(std::span<const SlotContent> replaced) {
    const Page old = page_;
    const DataPageView view(old);
    std::size_t start = kPageSize;
    for (unsigned row = 0; row < view.SlotCount(); ++row) {
        const Slot slot = view.At(row);
        const bool other = !replaced.empty() && replaced.front().row == row;
        const ByteView content = other ? replaced.front().bytes : Kept(slot);
        start -= content.size();
        std::ranges::copy(content, page_.begin() + static_cast<std::ptrdiff_t>(start));
        PutU16(page_, kDataHeader + 2 * std::size_t{row},
               static_cast<std::uint16_t>(start | (other ? replaced.front().flags : slot.flags)));
        replaced = other ? replaced.subspan(1) : replaced;
    }
    PutU16(page_, 2, static_cast<std::uint16_t>(start - kDataHeader - 2 * std::size_t{view.SlotCount()}));
}

}  // namespace tavrel::jet
