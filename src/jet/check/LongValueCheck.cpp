#include "jet/check/LongValueCheck.h"

#include <algorithm>

#include "jet/check/DataPageCheck.h"
#include "jet/check/Places.h"
#include "jet/check/TextForm.h"
#include "jet/storage/LongValue.h"

namespace tavrel::jet::check {

namespace {

constexpr std::size_t kDescriptorBytes = 12;
constexpr std::uint8_t kManyUses = 2;

}  // namespace

LongValueCheck::LongValueCheck(Context& context, const std::string& table, const TableDefinition& definition,
                               std::size_t column)
    : context_(context),
      column_(definition.columns[column]),
      place_(column),
      where_(ColumnPlace(table, definition.columns[column].name)),
      firstSlots_(1) {}

void LongValueCheck::ReadMaps(const LongValueMaps& maps) {
    pages_ = context_.maps.Read(maps.owned, where_ + " 긴 값 소유 지도");
    if (maps.free.ToU32() != 0) {
        const auto free = context_.maps.Read(maps.free, where_ + " 긴 값 여유 지도");
        const auto strange = std::find_if(free.begin(), free.end(), [this](PageNumber page) {
            return !std::binary_search(pages_.begin(), pages_.end(), page);
        });
        if (strange != free.end()) {
            context_.log.Add(FindingKind::FreeSpaceNotOwned, where_, {Number(*strange)});
        }
    }
    const PageOwners::OwnerId owner = context_.owners.Register(where_);
    for (const PageNumber page : pages_) {
        context_.owners.Claim(page, owner);
        Guard(context_.log, FindingKind::Unreadable, PagePlace(page), [&] { TakePage(page); });
        firstSlots_.push_back(uses_.size());
    }
}

void LongValueCheck::TakePage(PageNumber page) {
    const PageRef bytes = context_.pager.Read(page);
    if (!CheckDataPage(context_.log, bytes, page, std::nullopt)) {
        return;
    }
    if (U32(bytes, 4) != kOwnerLongValues) {
        context_.log.Add(FindingKind::LongPage, PagePlace(page));
    }
    uses_.resize(uses_.size() + DataPageView(bytes).SlotCount());
}

void LongValueCheck::CheckValue(RowPointer row, ByteView descriptor) {
    row_ = row;
    const std::uint32_t kind = U32(descriptor, 0) & ~kLongLengthMask;
    if (kind == kLongInline) {
        CheckInline(descriptor);
    } else if (descriptor.size() != kDescriptorBytes || (kind != kLongOneRow && kind != 0)) {
        context_.log.Add(FindingKind::LongDescriptor, Where());
    } else if (kind == kLongOneRow) {
        CheckOneRow(descriptor);
    } else {
        CheckChain(descriptor);
    }
}

std::string LongValueCheck::Where() const {
    return RowPlaceText(where_, row_);
}

void LongValueCheck::CheckInline(ByteView descriptor) {
    context_.log.Count("long-values-inline");
    const std::size_t length = LongValueLength(descriptor);
    if (descriptor.size() != kDescriptorBytes + length || U64(descriptor, 4) != 0) {
        context_.log.Add(FindingKind::LongDescriptor, Where());
        return;
    }
    CheckForm(descriptor.subspan(kDescriptorBytes), true, true);
}

void LongValueCheck::CheckOneRow(ByteView descriptor) {
    context_.log.Count("long-values-one-row");
    const std::optional<Part> part = TakePart(RowPointer::FromU32(U32(descriptor, 4)));
    if (!part) {
        return;
    }
    if (U32(descriptor, 8) != 0) {
        context_.log.Add(FindingKind::LongDescriptor, Where());
    }
    if (part->row.size() != LongValueLength(descriptor)) {
        context_.log.Add(FindingKind::LongLength, Where(),
                         {Number(LongValueLength(descriptor)), Number(part->row.size())});
    }
    CheckForm(part->row, column_.Compressed(), false);
}

/// A chain of which a part is used already is not followed further, so that all chains together cost no more
/// than the column's pages.  Memos in chains are never compressed.
void LongValueCheck::CheckChain(ByteView descriptor) {
    context_.log.Count("long-values-chain");
    std::uint64_t stored = 0;
    std::uint32_t mark = U32(descriptor, 8);
    bool compressed = false;
    RowPointer at = RowPointer::FromU32(U32(descriptor, 4));
    do {
        const std::optional<Part> part = TakePart(at);
        if (!part) {
            return;
        }
        CheckChainPage(at.page, part->page, mark);
        const ByteView data = Slice(part->row, 4, part->row.size() < 4 ? 0 : part->row.size() - 4);
        if (data.empty()) {
            context_.log.Add(FindingKind::LongRow, Where(), {PointerText(at)});
        }
        compressed |= stored == 0 && IsCompressed(data);
        stored += data.size();
        mark = 0;
        at = RowPointer::FromU32(U32(part->row, 0));
    } while (at.ToU32() != 0);
    if (stored != LongValueLength(descriptor)) {
        context_.log.Add(FindingKind::LongLength, Where(),
                         {Number(LongValueLength(descriptor)), Number(stored)});
    }
    if (column_.type == ColumnType::Memo && (compressed || stored % 2 != 0)) {
        context_.log.Add(FindingKind::TextCompression, Where(), {column_.name});
    }
    CheckPlace(stored, false);
}

/// Counts the use of a part; nothing when it cannot be used (again).
std::optional<LongValueCheck::Part> LongValueCheck::TakePart(RowPointer at) {
    const auto page = std::lower_bound(pages_.begin(), pages_.end(), at.page);
    if (page == pages_.end() || *page != at.page) {
        context_.log.Add(FindingKind::LongOutsideMap, Where(), {Number(at.page)});
        return std::nullopt;
    }
    const auto index = static_cast<std::size_t>(page - pages_.begin());
    const std::size_t use = firstSlots_[index] + at.row;
    if (use >= firstSlots_[index + 1]) {
        context_.log.Add(FindingKind::LongRow, Where(), {PointerText(at)});
        return std::nullopt;
    }
    uses_[use] = std::min<std::uint8_t>(static_cast<std::uint8_t>(uses_[use] + 1), kManyUses);
    if (uses_[use] == kManyUses) {
        return std::nullopt;  // CheckUse tells
    }
    PageRef bytes = context_.pager.Read(at.page);
    const Slot slot = DataPageView(bytes).At(at.row);
    if (slot.flags != 0) {
        context_.log.Add(FindingKind::LongRow, Where(), {PointerText(at)});
        return std::nullopt;
    }
    return Part{std::move(bytes), slot.row};
}

void LongValueCheck::CheckChainPage(PageNumber number, ByteView page, std::uint32_t mark) {
    const DataPageView view(page);
    if (view.SlotCount() != 1) {
        context_.log.Add(FindingKind::LongChainRows, Where(), {Number(number), Number(view.SlotCount())});
    }
    if (view.ChainMark() != mark) {
        context_.log.Add(FindingKind::LongChainMark, Where(), {Number(number)});
    }
}

void LongValueCheck::CheckForm(ByteView stored, bool compress, bool inRow) {
    std::size_t bytes = stored.size();
    if (column_.type == ColumnType::Memo) {
        const TextFacts facts = ExamineText(stored, compress, TextKind::Memo);
        bytes = facts.plainBytes;
        if (facts.form == TextForm::Wrong) {
            context_.log.Add(FindingKind::TextCompression, Where(), {column_.name});
        } else if (facts.form == TextForm::NotCompressed) {
            plainTexts_.Add(row_);
        }
    }
    CheckPlace(bytes, inRow);
}

/// Up to 64 bytes (memo: of plain text) are stored in the row, more never.
void LongValueCheck::CheckPlace(std::uint64_t bytes, bool inRow) {
    if (inRow != (bytes <= kLongMaxInline)) {
        context_.log.Add(FindingKind::LongPlace, Where(), {Number(bytes), inRow ? "레코드 안" : "레코드 밖"});
    }
}

void LongValueCheck::CheckUse() {
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        if (firstSlots_[i] == firstSlots_[i + 1]) {
            continue;
        }
        const PageRef page = context_.pager.Read(pages_[i]);
        const DataPageView view(page);
        for (unsigned slot = 0; slot < view.SlotCount(); ++slot) {
            const unsigned uses = uses_[firstSlots_[i] + slot];
            const unsigned wanted = (view.At(slot).flags & kSlotHidden) != 0 ? 0 : 1;
            if (uses != wanted) {
                const RowPointer at{pages_[i], static_cast<std::uint8_t>(slot)};
                context_.log.Add(FindingKind::LongUse, where_,
                                 {PointerText(at), uses == kManyUses ? "2 이상" : Number(uses)});
            }
        }
    }
    plainTexts_.Report(context_.log, where_);
}

}  // namespace tavrel::jet::check
