#include "jet/compact/RowSalvage.h"

#include <algorithm>
#include <set>

#include "jet/check/TextForm.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/LongValue.h"
#include "jet/table/StoredText.h"

namespace tavrel::jet::compact {

RowSalvage::RowSalvage(SourcePages& source, const TableDefinition& table, std::string name,
                       const std::vector<PageNumber>& pages, LossLog& losses)
    : source_(source),
      table_(table),
      name_(std::move(name)),
      shape_(table.Shape()),
      losses_(losses),
      longBudget_(8 * std::uint64_t{kPageSize} * source.Count()) {
    std::vector<RowPointer> hidden;
    for (const PageNumber page : pages) {
        FindRows(page, hidden);
    }
    // A moved row and its slot belong together; either may have lost the other.
    std::set<RowPointer> waiting(hidden.begin(), hidden.end());
    std::erase_if(rows_, [&](RowPointer at) {
        const auto target = targets_.find(at.ToU32());
        if (target == targets_.end() || waiting.erase(target->second) > 0) {
            return false;
        }
        losses_.Add(Place(at), "옮겨진 행이 없음");
        return true;
    });
    rows_.insert(rows_.end(), waiting.begin(), waiting.end());
}

std::string RowSalvage::Place(RowPointer at) const {
    return "테이블 " + name_ + " 행 " + std::to_string(at.page) + ":" + std::to_string(at.row);
}

void RowSalvage::FindRows(PageNumber number, std::vector<RowPointer>& hidden) {
    try {
        const PageRef page = source_.Read(number);
        const DataPageView view(page);
        for (unsigned i = 0; i < std::min(view.SlotCount(), kMaxSlots); ++i) {
            const RowPointer at{number, static_cast<std::uint8_t>(i)};
            try {
                const Slot slot = view.At(i);
                if (slot.flags == kSlotMoved) {
                    targets_[at.ToU32()] = RowPointer::FromU32(U32(slot.row, 0));
                }
                if (slot.flags == kSlotHidden) {
                    hidden.push_back(at);
                } else if (slot.flags != kSlotDeleted) {
                    rows_.push_back(at);
                }
            } catch (const Error& error) {
                RequireDamage(error);
                losses_.Add(Place(at), error);
            }
        }
    } catch (const Error& error) {
        RequireDamage(error);
        losses_.Add("테이블 " + name_ + " 페이지 " + std::to_string(number), error);
    }
}

ByteVector RowSalvage::RowBytes(RowPointer at) {
    const auto target = targets_.find(at.ToU32());
    const RowPointer place = target == targets_.end() ? at : target->second;
    const PageRef page = source_.Read(place.page);
    const Slot slot = DataPageView(page).At(place.row);
    return {slot.row.begin(), slot.row.end()};
}

std::optional<StoredFields> RowSalvage::Read(RowPointer at, bool tell) {
    StoredFields fields(table_.columns.size());
    try {
        const ByteVector bytes = RowBytes(at);
        const RowView row(shape_, bytes);
        if (row.ColumnCount() == 0 || row.ColumnCount() > shape_.ColumnNumbers()) {
            ThrowDamaged("행의 열 수가 잘못됨");
        }
        for (std::size_t place = 0; place < fields.size(); ++place) {
            try {
                fields[place] = Value(row, place, at, tell);
            } catch (const Error& error) {
                RequireDamage(error);
                if (tell) {
                    losses_.Add(Place(at) + " 필드 " + table_.columns[place].name, error);
                }
            }
        }
        return fields;
    } catch (const Error& error) {
        RequireDamage(error);
        if (tell) {
            losses_.Add(Place(at), error);
        }
        return std::nullopt;
    }
}

std::optional<ByteVector> RowSalvage::Value(const RowView& row, std::size_t place, RowPointer at, bool tell) {
    const Column& column = table_.columns[place];
    const std::optional<ByteView> value = row.Field(place);
    if (!value) {
        return std::nullopt;
    }
    if (column.Fixed() && column.type != ColumnType::Boolean && row.HasOffsets() &&
        2U + column.fixedOffset + column.length > row.VariableOffset(0)) {
        ThrowDamaged("고정 열이 행의 고정 부분을 벗어남");
    }
    if (!IsLong(column.type)) {
        return Checked(column, *value);
    }
    const std::uint64_t length = LongValueLength(*value);
    if (length > longBudget_) {
        ThrowDamaged("긴 값이 파일보다 김");
    }
    longBudget_ -= length;
    const bool whole = StoresItsLength(*value);
    ByteVector bytes = ReadLongValue(source_.Cache(), *value);
    if (column.type == ColumnType::Memo) {
        DecodeUnits(bytes);  // throws when it is no text
    }
    if (tell && !whole) {
        losses_.Add(Place(at) + " 필드 " + column.name, "긴 값의 길이가 저장된 것과 다름");
    }
    return bytes;
}

/// True when as many bytes are stored as the descriptor says; more of them are cut off.  Throws 3428 for a
/// chain that comes back to where it was: it would be read again and again until the length is reached.
bool RowSalvage::StoresItsLength(ByteView descriptor) {
    const std::uint32_t length = LongValueLength(descriptor);
    const std::uint32_t kind = U32(descriptor, 0) & ~kLongLengthMask;
    RowPointer at = RowPointer::FromU32(U32(descriptor, 4));
    if (kind == kLongOneRow) {
        const PageRef page = source_.Read(at.page);
        return DataPageView(page).At(at.row).row.size() == length;
    }
    std::uint64_t stored = 0;
    for (std::set<RowPointer> seen; kind == 0 && stored < length && at.ToU32() != 0;) {
        if (!seen.insert(at).second) {
            ThrowDamaged("긴 값의 사슬이 되돌아옴");
        }
        const PageRef page = source_.Read(at.page);
        const ByteView part = DataPageView(page).At(at.row).row;
        at = RowPointer::FromU32(U32(part, 0));
        stored += part.size() - sizeof(std::uint32_t);
    }
    return kind != 0 || stored == length;
}

/// The value in the form that the engine gives it; throws when it can be none of the column.
ByteVector RowSalvage::Checked(const Column& column, ByteView value) {
    const unsigned fixed = FixedLength(column.type);
    if ((fixed != 0 && column.type != ColumnType::Boolean && value.size() != fixed) ||
        (column.type == ColumnType::Binary && value.size() > column.length)) {
        ThrowDamaged("값의 길이가 잘못됨");
    }
    if (column.type == ColumnType::Text) {
        const auto facts =
            check::ExamineText(value, column.Compressed() && !column.Fixed(), TextKind::Column);
        if (facts.plainBytes > column.length) {
            ThrowDamaged("텍스트가 필드보다 김");
        }
        if (facts.form == check::TextForm::Wrong && !column.Fixed()) {
            return StoredText(DecodeUnits(value), column.Compressed(), TextKind::Column);
        }
    }
    return {value.begin(), value.end()};
}

}  // namespace tavrel::jet::compact
