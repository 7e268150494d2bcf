#include "jet/catalog/RowCursor.h"

#include <algorithm>

#include "jet/storage/LongValue.h"
#include "jet/storage/Rc4.h"
#include "jet/storage/TextCoding.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet {

RowCursor::RowCursor(Pager& pager, const TableDefinition& table, std::uint32_t ownerKey)
    : pager_(pager),
      table_(table),
      shape_(table.Shape()),
      ownerKey_(ownerKey),
      // A value is asked for a few times at most, and each lies in pages of its own.
      longBudget_(4 * std::uint64_t{kPageSize} * pager.PageCount()) {}

void RowCursor::FindPages() {
    havePages_ = true;
    pages_ = ReadRowPages(pager_, table_.ownedMap);
    rowBudget_ = std::uint64_t{kPageSize} * pages_.size();
}

/// Opens the next page; false when there is none.
bool RowCursor::OpenPage() {
    if (!havePages_) {
        FindPages();
    }
    if (nextPage_ == pages_.size()) {
        page_.reset();
        view_.reset();
        return false;
    }
    pageNumber_ = pages_[nextPage_++];
    page_ = pager_.Read(pageNumber_);
    view_.emplace(page_->Bytes());
    if (view_->Owner() != table_.page) {
        ThrowDamaged("페이지 " + std::to_string(pageNumber_) + "의 소유자가 다름");
    }
    slot_ = 0;
    return true;
}

bool RowCursor::Next() {
    while (true) {
        if (!view_ || slot_ == view_->SlotCount()) {
            if (!OpenPage()) {
                return false;
            }
            continue;
        }
        const unsigned slot = slot_++;
        const Slot found = view_->At(slot);
        if ((found.flags & kSlotHidden) != 0) {
            continue;  // deleted, or the target of a moved slot
        }
        at_ = {pageNumber_, static_cast<std::uint8_t>(slot)};
        const ByteView row = found.flags == kSlotMoved ? FollowMove(found.row) : found.row;
        CountBytes(row.size());
        row_ = RowView(shape_, row);
        return true;
    }
}

void RowCursor::GoTo(RowPointer at) {
    visited_ = pager_.Read(at.page);
    const DataPageView view(*visited_);
    const Slot slot = view.At(at.row);
    if (view.Owner() != table_.page || (slot.flags & kSlotHidden) != 0) {
        ThrowDamaged("인덱스가 없는 행을 가리킴");
    }
    at_ = at;
    row_ = RowView(shape_, slot.flags == kSlotMoved ? FollowMove(slot.row) : slot.row);
}

ByteView RowCursor::FollowMove(ByteView pointer) {
    const RowPointer target = RowPointer::FromU32(U32(pointer, 0));
    moved_ = pager_.Read(target.page);
    const DataPageView view(*moved_);
    const Slot slot = view.At(target.row);
    if (view.Owner() != table_.page || slot.flags != kSlotHidden) {
        ThrowDamaged("옮겨진 행의 포인터가 잘못됨");
    }
    return slot.row;
}

/// Each byte of a page belongs to one row: a table that yields more than its pages hold runs in a circle.
void RowCursor::CountBytes(std::size_t bytes) {
    if (bytes > rowBudget_) {
        ThrowDamaged("행이 페이지보다 많음");
    }
    rowBudget_ -= bytes;
}

std::optional<ByteVector> RowCursor::Stored(std::size_t column) {
    std::optional<ByteVector> out;
    Stored(column, out);
    return out;
}

void RowCursor::Stored(std::size_t column, std::optional<ByteVector>& out) {
    const std::optional<ByteView> raw = Raw(column);
    if (!raw) {
        out.reset();
        return;
    }
    const Column& definition = table_.columns[column];
    if (IsLong(definition.type)) {
        const std::uint64_t length = LongValueLength(*raw);
        if (length > longBudget_) {
            ThrowDamaged("긴 값이 파일보다 김");
        }
        longBudget_ -= length;
        out = ReadLongValue(pager_, *raw);
        return;
    }
    if (!out) {
        out.emplace();
    }
    out->assign(raw->begin(), raw->end());
    if (definition.Enciphered()) {
        Rc4(ownerKey_, *out);
    }
}

Value RowCursor::Get(std::size_t column) {
    const Column& definition = table_.columns[column];
    if (!IsLong(definition.type) && !definition.Enciphered()) {
        const std::optional<ByteView> raw = Raw(column);
        return raw ? DecodeValue(definition, *raw) : Value{Null{}};
    }
    const std::optional<ByteVector> stored = Stored(column);
    return stored ? DecodeValue(definition, *stored) : Value{Null{}};
}

namespace {

Decimal DecodeDecimal(ByteView stored, std::uint8_t scale) {
    Decimal decimal;
    decimal.negative = stored[0] != 0;
    decimal.scale = scale;
    for (std::size_t k = 0; k < 4; ++k) {
        decimal.words[k] = U32(stored, 1 + 4 * k);
    }
    return decimal;
}

Value DecodeNumber(const Column& column, ByteView stored) {
    switch (column.type) {
        case ColumnType::Boolean:
            return stored[0] != 0;
        case ColumnType::Byte:
            return std::int64_t{stored[0]};
        case ColumnType::Integer:
            return std::int64_t{static_cast<std::int16_t>(U16(stored, 0))};
        case ColumnType::Long:
            return std::int64_t{static_cast<std::int32_t>(U32(stored, 0))};
        case ColumnType::Currency:
            return Currency{static_cast<std::int64_t>(U64(stored, 0))};
        case ColumnType::Single: {
            const std::uint32_t bits = U32(stored, 0);
            float value = 0;
            std::memcpy(&value, &bits, sizeof value);
            return value;
        }
        case ColumnType::Double:
            return DoubleOf(U64(stored, 0));
        case ColumnType::Date:
            return Date{DoubleOf(U64(stored, 0))};
        default:
            return DecodeDecimal(stored, column.scale);
    }
}

}  // namespace

Value DecodeValue(const Column& column, ByteView stored) {
    const unsigned fixedLength = FixedLength(column.type);
    if (fixedLength != 0 && stored.size() != fixedLength) {
        ThrowDamaged("열 " + column.name + "의 값이 " + std::to_string(stored.size()) + "바이트임");
    }
    switch (column.type) {
        case ColumnType::Text:
        case ColumnType::Memo:
            return DecodeText(stored);
        case ColumnType::Binary:
        case ColumnType::Ole:
        case ColumnType::FixedBinary:
            return ByteVector(stored.begin(), stored.end());
        case ColumnType::Guid: {
            Guid guid;
            std::copy(stored.begin(), stored.end(), guid.bytes.begin());
            return guid;
        }
        default:
            return DecodeNumber(column, stored);
    }
}

}  // namespace tavrel::jet
