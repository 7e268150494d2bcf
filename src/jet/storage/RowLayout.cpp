#include "jet/storage/RowLayout.h"

#include <algorithm>
#include <string>

#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

/// Bounds for a row that was written when `columnCount` numbers had been given out.
VariableBounds BoundsFor(const std::vector<ColumnPlace>& columns, unsigned columnCount,
                         unsigned variableNumbers) {
    VariableBounds bounds{0, variableNumbers};
    for (const ColumnPlace& column : columns) {
        if (column.number < columnCount) {
            bounds.low = std::max(bounds.low, column.variableIndex + (column.fixed ? 0U : 1U));
        } else {
            bounds.high = std::min<unsigned>(bounds.high, column.variableIndex);
        }
    }
    bounds.high = std::max(bounds.low, bounds.high);
    return bounds;
}

}  // namespace

RowShape::RowShape(std::vector<ColumnPlace> columns, unsigned columnNumbers, unsigned variableNumbers)
    : columns_(std::move(columns)), columnNumbers_(columnNumbers), variableNumbers_(variableNumbers) {
    // Only rows of a few ages are ever met, but the present count is met in every row.
    present_ = BoundsFor(columns_, columnNumbers_, variableNumbers_);
    for (const ColumnPlace& column : columns_) {
        if (column.fixed && !column.boolean) {
            fixedBytes_ = std::max<std::size_t>(fixedBytes_, std::size_t{column.offset} + column.length);
        }
    }
}

VariableBounds RowShape::Bounds(unsigned columnCount) const {
    return columnCount == columnNumbers_ ? present_ : BoundsFor(columns_, columnCount, variableNumbers_);
}

RowView::RowView(const RowShape& shape, ByteView row) : shape_(&shape), row_(row), columnCount_(U16(row, 0)) {
    const std::size_t maskBytes = (columnCount_ + 7) / 8;
    if (row.size() < 2 + maskBytes) {
        ThrowDamaged("행이 너무 짧음");
    }
    mask_ = row.size() - maskBytes;
    FindOffsets(shape.Bounds(columnCount_));
}

void RowView::FindOffsets(VariableBounds bounds) {
    offsetTable_ = mask_;
    if (bounds.high == 0) {
        return;
    }
    if (mask_ < 2 + 2) {
        if (bounds.low > 0) {
            ThrowDamaged("행에 오프셋 표가 없음");
        }
        return;
    }
    const unsigned count = U16(row_, mask_ - 2);
    const bool fits = mask_ >= 2 + 4 + 2 * std::size_t{count};
    if (bounds.low > 0 && !fits) {
        ThrowDamaged("행의 가변 열 수가 잘못됨");
    }
    if (!fits || (bounds.low == 0 && !PlausibleTable(count, bounds.high))) {
        return;
    }
    hasOffsets_ = true;
    variableCount_ = count;
    offsetTable_ = mask_ - 4 - 2 * std::size_t{count};
}

/// Columns beside the border were dropped, so that only the bytes can tell whether there is a table.
bool RowView::PlausibleTable(unsigned count, unsigned high) const {
    if (count == 0 || count > high) {
        return false;
    }
    const std::size_t table = mask_ - 4 - 2 * std::size_t{count};
    unsigned before = 2;
    for (unsigned i = 0; i <= count; ++i) {
        const unsigned offset = U16(row_, mask_ - 4 - 2 * std::size_t{i});
        if (offset < before) {
            return false;
        }
        before = offset;
    }
    return before <= table;
}

unsigned RowView::VariableOffset(unsigned index) const {
    return U16(row_, mask_ - 4 - 2 * std::size_t{index});
}

bool RowView::MaskBit(unsigned number) const {
    return number < columnCount_ && (row_[mask_ + number / 8] >> (number % 8) & 1) != 0;
}

std::optional<ByteView> RowView::Field(std::size_t column) const {
    static constexpr std::array<std::uint8_t, 2> kBoolean = {0, 1};
    const ColumnPlace& place = shape_->Columns()[column];
    const bool present = MaskBit(place.number);
    if (place.boolean) {
        return ByteView(kBoolean).subspan(present ? 1 : 0, 1);
    }
    if (!present) {
        return std::nullopt;
    }
    if (place.fixed) {
        return Slice(row_.first(mask_), 2 + std::size_t{place.offset}, place.length);
    }
    if (!hasOffsets_ || place.variableIndex >= variableCount_) {
        return std::nullopt;
    }
    const unsigned start = VariableOffset(place.variableIndex);
    const unsigned end = VariableOffset(place.variableIndex + 1U);
    if (start < 2 || end < start || end > offsetTable_) {
        ThrowDamaged("가변 열의 오프셋이 잘못됨");
    }
    return row_.subspan(start, end - start);
}

namespace {

std::size_t MaskBytes(const RowShape& shape) {
    return (shape.ColumnNumbers() + 7) / 8;
}

/// Throws 3428 for a definition whose columns have no place in a row of its own, or another length than their
/// values: such a row must not be written.
void RequirePlaces(const RowShape& shape, const std::vector<std::optional<ByteVector>>& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const ColumnPlace& column = shape.Columns()[i];
        const bool lengthFits =
            !column.fixed || !fields[i] || fields[i]->size() == (column.boolean ? 1U : column.length);
        if (column.number >= shape.ColumnNumbers() || !lengthFits ||
            (!column.fixed && column.variableIndex >= shape.VariableNumbers())) {
            ThrowDamaged("열 " + std::to_string(column.number) + "의 정의가 잘못됨");
        }
    }
}

/// A bit for each column that is not null; of a Boolean its value.
void AppendMask(const RowShape& shape, const std::vector<std::optional<ByteVector>>& fields,
                ByteVector& row) {
    const std::size_t mask = row.size();
    row.resize(mask + MaskBytes(shape));
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const ColumnPlace& column = shape.Columns()[i];
        if (fields[i] && (!column.boolean || (*fields[i])[0] != 0)) {
            std::uint8_t& bits = row[mask + column.number / 8];
            bits = static_cast<std::uint8_t>(bits | 1U << (column.number % 8));
        }
    }
}

/// The variable values and their offsets: that of the end first, that of the first value last.
void AppendVariablePart(const RowShape& shape, const std::vector<std::optional<ByteVector>>& fields,
                        ByteVector& row) {
    std::vector<const ByteVector*> values(shape.VariableNumbers(), nullptr);
    const std::size_t begin = row.size();
    std::size_t end = begin;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const ColumnPlace& column = shape.Columns()[i];
        if (!column.fixed && fields[i]) {
            values[column.variableIndex] = &*fields[i];
            end += fields[i]->size();
        }
    }
    if (end > kMaxRowBytes) {
        throw MakeError(errors::kRecordTooLarge);
    }
    std::size_t offset = end + 2 * values.size();
    row.reserve(offset + 4 + MaskBytes(shape));
    row.resize(offset + 2);
    std::size_t place = begin;
    for (const ByteVector* value : values) {
        PutU16(row, offset, static_cast<std::uint16_t>(place));
        offset -= 2;
        if (value != nullptr) {
            std::ranges::copy(*value, row.begin() + static_cast<std::ptrdiff_t>(place));
            place += value->size();
        }
    }
    PutU16(row, offset, static_cast<std::uint16_t>(place));
    AppendU16(row, static_cast<std::uint16_t>(values.size()));
}

}  // namespace

ByteVector BuildRow(const RowShape& shape, const std::vector<std::optional<ByteVector>>& fields) {
    RequirePlaces(shape, fields);
    ByteVector row(2 + shape.FixedBytes(), 0);
    PutU16(row, 0, static_cast<std::uint16_t>(shape.ColumnNumbers()));
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const ColumnPlace& column = shape.Columns()[i];
        if (fields[i] && column.fixed && !column.boolean) {
            std::copy_n(fields[i]->begin(), column.length, row.begin() + 2 + column.offset);
        }
    }
    if (shape.VariableNumbers() > 0) {
        AppendVariablePart(shape, fields, row);
    }
    AppendMask(shape, fields, row);
    if (row.size() > kMaxRowBytes) {
        throw MakeError(errors::kRecordTooLarge);
    }
    return row;
}

}  // namespace tavrel::jet
