#include "jet/check/RowCheck.h"

#include <algorithm>

#include "jet/check/Places.h"
#include "jet/check/TextForm.h"

namespace tavrel::jet::check {

namespace {
constexpr std::size_t kDescriptorBytes = 12;
}

RowCheck::RowCheck(FindingLog& log, const std::string& table, const TableDefinition& definition,
                   const RowShape& shape, std::vector<LongValueCheck>& longValues)
    : log_(log),
      table_(table),
      definition_(definition),
      shape_(shape),
      longValues_(longValues),
      plainTexts_(definition.columns.size()) {
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const Column& column = definition.columns[i];
        if (column.type == ColumnType::Long && column.Autonumber()) {
            autonumber_ = i;
        }
    }
}

bool RowCheck::Check(RowPointer slot, ByteView row) {
    slot_ = slot;
    if (!CheckFrame(row)) {
        return false;
    }
    const RowView view(shape_, row);
    const VariableBounds bounds = shape_.Bounds(view.ColumnCount());
    if ((bounds.low > 0 || view.HasOffsets()) && !CheckOffsets(view, bounds)) {
        return false;
    }
    CheckFixedPart(view, view.HasOffsets() ? view.VariableOffset(0) : view.OffsetTable());
    olderRows_ += view.ColumnCount() < shape_.ColumnNumbers() ? 1 : 0;
    rowsWithoutOffsets_ += view.HasOffsets() ? 0 : 1;
    if (!CheckValues(view)) {
        return false;
    }
    CheckLongValues(view);
    return true;
}

/// Made only when there is something to tell.
std::string RowCheck::Where() const {
    return RowPlaceText(table_, slot_);
}

bool RowCheck::CheckFrame(ByteView row) {
    const std::size_t columns = row.size() < 2 ? 0 : U16(row, 0);
    if (columns == 0 || columns > shape_.ColumnNumbers() || row.size() < 2 + (columns + 7) / 8) {
        log_.Add(FindingKind::RowColumnCount, Where(), {Number(columns)});
        return false;
    }
    return true;
}

bool RowCheck::CheckOffsets(const RowView& view, VariableBounds bounds) {
    const unsigned count = view.VariableCount();
    if (count < bounds.low || count > bounds.high) {
        log_.Add(FindingKind::RowVariableCount, Where(), {Number(count)});
        return false;
    }
    unsigned before = 0;
    for (unsigned i = 0; i <= count; ++i) {
        const unsigned offset = view.VariableOffset(i);
        if (offset < before || offset > view.OffsetTable()) {
            log_.Add(FindingKind::RowOffsets, Where());
            return false;
        }
        before = offset;
    }
    return true;
}

void RowCheck::CheckFixedPart(const RowView& view, std::size_t end) {
    for (const Column& column : definition_.columns) {
        if (column.Fixed() && column.type != ColumnType::Boolean && view.MaskBit(column.number) &&
            2U + column.fixedOffset + column.length > end) {
            log_.Add(FindingKind::FixedOutside, Where(), {column.name});
        }
    }
}

bool RowCheck::CheckValues(const RowView& view) {
    for (std::size_t i = 0; i < definition_.columns.size(); ++i) {
        const Column& column = definition_.columns[i];
        const std::optional<ByteView> value = view.Field(i);
        if (!value) {
            continue;
        }
        if (!CheckLength(column, *value)) {
            return false;
        }
        if (column.type == ColumnType::Text) {
            CheckText(i, *value);
        } else if (i == autonumber_) {
            highestAutonumber_ = std::max(highestAutonumber_, U32(*value, 0));
        }
    }
    return true;
}

bool RowCheck::CheckLength(const Column& column, ByteView value) {
    const std::size_t fixed = column.type == ColumnType::Boolean ? 1 : FixedLength(column.type);
    const bool isShort = IsLong(column.type) && value.size() < kDescriptorBytes;
    if ((fixed != 0 && value.size() != fixed) || isShort) {
        log_.Add(FindingKind::ValueLength, Where(), {column.name, Number(value.size())});
        return false;
    }
    if (column.type == ColumnType::Binary && value.size() > column.length) {
        log_.Add(FindingKind::TextTooLong, Where(),
                 {column.name, Number(value.size()), Number(column.length)});
    }
    return true;
}

void RowCheck::CheckText(std::size_t place, ByteView value) {
    const Column& column = definition_.columns[place];
    const TextFacts facts = ExamineText(value, column.Compressed() && !column.Fixed(), TextKind::Column);
    if (facts.plainBytes > column.length) {
        log_.Add(FindingKind::TextTooLong, Where(),
                 {column.name, Number(facts.plainBytes), Number(column.length)});
    }
    if (facts.form == TextForm::Wrong) {
        log_.Add(FindingKind::TextCompression, Where(), {column.name});
    } else if (facts.form == TextForm::NotCompressed) {
        plainTexts_[place].Add(slot_);
    }
}

void RowCheck::CheckLongValues(const RowView& view) {
    for (LongValueCheck& longValue : longValues_) {
        if (const std::optional<ByteView> value = view.Field(longValue.Place())) {
            // The row itself is sound whatever becomes of the value.
            Guard(
                log_, FindingKind::RowDamaged, [this] { return Where(); },
                [&] { longValue.CheckValue(slot_, *value); });
        }
    }
}

void RowCheck::Finish() {
    log_.Count("rows-older-than-a-column", olderRows_);
    log_.Count("rows-without-offset-table", rowsWithoutOffsets_);
    for (std::size_t i = 0; i < plainTexts_.size(); ++i) {
        plainTexts_[i].Report(log_, table_ + " 필드 " + definition_.columns[i].name);
    }
    constexpr std::uint32_t kNegative = 0x80000000;  // random numbers: there is no last one
    if (highestAutonumber_ < kNegative && highestAutonumber_ > definition_.lastAutonumber) {
        log_.Add(FindingKind::Autonumber, table_,
                 {Number(definition_.lastAutonumber), Number(highestAutonumber_)});
    }
}

}  // namespace tavrel::jet::check
