#include "jet/compact/RowsOutput.h"

#include <algorithm>

namespace tavrel::jet::compact {

namespace {

/// A page with less room is not worth naming in a free-space map.
constexpr unsigned kRoomWorthNaming = 256;
/// Pages of short long values that are open at a time, so that few of them are left with a hole.
constexpr std::size_t kOpenPages = 4;

bool HasRoom(const Page& page) {
    const DataPageView view(page);
    return view.FreeBytes() >= kRoomWorthNaming && view.SlotCount() < kMaxSlots;
}

}  // namespace

RowPointer RowsOutput::Append(ByteView row) {
    if (number_ == 0 || !DataPageEditor(page_).Fits(row.size())) {
        if (number_ != 0) {
            out_.Put(number_, page_);
        }
        number_ = out_.Take();
        written_.owned.push_back(number_);
        DataPageEditor(page_).Format(table_);
    }
    return {number_, DataPageEditor(page_).Append(row)};
}

WrittenPages RowsOutput::Finish() {
    if (number_ != 0) {
        out_.Put(number_, page_);
        if (HasRoom(page_)) {
            written_.withRoom.push_back(number_);
        }
    }
    return std::move(written_);
}

PageNumber LongValuesOutput::Take() {
    written_.owned.push_back(out_.Take());
    return written_.owned.back();
}

RowPointer LongValuesOutput::AppendRow(ByteView value) {
    OpenPage& page = PageFor(value.size());
    const RowPointer at{page.number, DataPageEditor(page.page).Append(value)};
    if (!mayShare_) {
        CloseFullest();
    }
    return at;
}

/// The open page that the value fills best.
LongValuesOutput::OpenPage& LongValuesOutput::PageFor(std::size_t length) {
    OpenPage* best = nullptr;
    for (OpenPage& page : open_) {
        const bool fits = DataPageEditor(page.page).Fits(length);
        if (fits &&
            (best == nullptr || DataPageView(page.page).FreeBytes() < DataPageView(best->page).FreeBytes())) {
            best = &page;
        }
    }
    if (best != nullptr) {
        return *best;
    }
    if (open_.size() == kOpenPages) {
        CloseFullest();
    }
    OpenPage& page = open_.emplace_back();
    page.number = Take();
    DataPageEditor(page.page).Format(kOwnerLongValues);
    return page;
}

void LongValuesOutput::CloseFullest() {
    const auto fullest = std::ranges::min_element(
        open_, {}, [](const OpenPage& page) { return DataPageView(page.page).FreeBytes(); });
    out_.Put(fullest->number, fullest->page);
    open_.erase(fullest);
}

RowPointer LongValuesOutput::BeginChain(std::uint32_t mark) {
    part_ = Take();
    mark_ = mark;
    return {part_, 0};
}

void LongValuesOutput::AppendPart(ByteView data, bool last) {
    const PageNumber next = last ? 0 : Take();
    ByteVector row;
    AppendU32(row, RowPointer{next, 0}.ToU32());
    AppendBytes(row, data);
    Page page;
    DataPageEditor editor(page);
    editor.Format(kOwnerLongValues, mark_);
    editor.Append(row);
    out_.Put(part_, page);
    part_ = next;
    mark_ = 0;
}

WrittenPages LongValuesOutput::Finish() {
    for (const OpenPage& page : open_) {
        out_.Put(page.number, page.page);
        if (HasRoom(page.page) && DataPageView(page.page).SlotCount() > 1) {
            written_.withRoom.push_back(page.number);
        }
    }
    std::ranges::sort(written_.withRoom);
    return std::move(written_);
}

}  // namespace tavrel::jet::compact
