#include "jet/storage/RowPatch.h"

#include <algorithm>

#include "jet/storage/DataPage.h"

namespace tavrel::jet {

namespace {

/// Where the fixed columns end.
std::size_t FixedEnd(const RowView& row) {
    return row.HasOffsets() ? row.VariableOffset(0) : row.OffsetTable();
}

/// The mask bit of a column that holds `bytes`, null or not.
void PutMaskBit(std::uint8_t& bits, const ColumnPlace& place, const ByteVector* bytes) {
    const bool set = bytes != nullptr && (!place.boolean || (*bytes)[0] != 0);
    const auto bit = static_cast<std::uint8_t>(1U << place.number % 8);
    bits = static_cast<std::uint8_t>(set ? bits | bit : bits & ~bit);
}

class Patch {
  public:
    Patch(const RowShape& shape, const RowView& row, ByteView bytes, std::span<const FieldBytes> fields,
          ByteVector& out)
        : shape_(shape),
          row_(row),
          bytes_(bytes),
          fields_(fields),
          out_(out),
          start_(out.size()),
          columns_(row.ColumnCount()),
          variables_(row.VariableCount()) {
        if (std::ranges::any_of(fields, [this](const FieldBytes& field) { return IsYounger(field); })) {
            columns_ = std::max(columns_, shape.ColumnNumbers());
            variables_ = std::max(variables_, shape.VariableNumbers());
        }
    }

    void Append() {
        AppendFixedPart();
        if (variables_ > 0 || row_.HasOffsets()) {
            AppendVariablePart();
        }
        AppendMask();
        if (out_.size() - start_ > kMaxRowBytes) {
            throw MakeError(errors::kRecordTooLarge);
        }
    }

  private:
    [[nodiscard]] const ColumnPlace& PlaceOf(const FieldBytes& field) const {
        return shape_.Columns()[field.place];
    }

    [[nodiscard]] bool IsYounger(const FieldBytes& field) const {
        const ColumnPlace& place = PlaceOf(field);
        return place.number >= row_.ColumnCount() ||
               (!place.fixed && place.variableIndex >= row_.VariableCount());
    }

    void AppendFixedPart() {
        const std::size_t end = FixedEnd(row_);
        if (end < 2 || end > row_.OffsetTable()) {
            ThrowDamaged("가변 열의 오프셋이 잘못됨");
        }
        AppendU16(out_, static_cast<std::uint16_t>(columns_));
        AppendBytes(out_, bytes_.subspan(2, end - 2));
        if (columns_ > row_.ColumnCount() || variables_ > row_.VariableCount()) {
            out_.resize(std::max(out_.size(), start_ + 2 + shape_.FixedBytes()));
        }
        for (const FieldBytes& field : fields_) {
            const ColumnPlace& place = PlaceOf(field);
            if (place.fixed && !place.boolean && field.bytes != nullptr) {
                const std::size_t at = start_ + 2 + place.offset;
                if (at + place.length > out_.size() || field.bytes->size() != place.length) {
                    ThrowDamaged("행의 고정 부분이 너무 짧음");
                }
                std::copy_n(field.bytes->begin(), place.length,
                            out_.begin() + static_cast<std::ptrdiff_t>(at));
            }
        }
    }

    /// What variable column `index` held, or is to hold.
    [[nodiscard]] ByteView VariableValue(unsigned index) const {
        for (const FieldBytes& field : fields_) {
            const ColumnPlace& place = PlaceOf(field);
            if (!place.fixed && place.variableIndex == index) {
                return field.bytes != nullptr ? ByteView(*field.bytes) : ByteView();
            }
        }
        if (index >= row_.VariableCount()) {
            return {};
        }
        const unsigned from = row_.VariableOffset(index);
        const unsigned to = row_.VariableOffset(index + 1);
        if (from < 2 || to < from || to > row_.OffsetTable()) {
            ThrowDamaged("가변 열의 오프셋이 잘못됨");
        }
        return bytes_.subspan(from, to - from);
    }

    void AppendVariablePart() {
        std::array<std::uint16_t, 256> ends{};
        const auto place = [this] { return static_cast<std::uint16_t>(out_.size() - start_); };
        const std::uint16_t begin = place();
        for (unsigned i = 0; i < variables_ && i < ends.size(); ++i) {
            AppendBytes(out_, VariableValue(i));
            ends[i] = place();
        }
        if (variables_ > ends.size() || out_.size() - start_ > kMaxRowBytes) {
            throw MakeError(errors::kRecordTooLarge);
        }
        for (unsigned i = variables_; i-- > 0;) {
            AppendU16(out_, ends[i]);
        }
        AppendU16(out_, begin);
        AppendU16(out_, static_cast<std::uint16_t>(variables_));
    }

    void AppendMask() {
        const std::size_t mask = out_.size();
        out_.resize(mask + (columns_ + 7) / 8);
        const unsigned old = row_.ColumnCount();
        const ByteView oldMask = bytes_.last((old + 7) / 8);
        std::ranges::copy(oldMask, out_.begin() + static_cast<std::ptrdiff_t>(mask));
        if (columns_ > old && old % 8 != 0) {
            std::uint8_t& last = out_[mask + old / 8];
            last = static_cast<std::uint8_t>(last & ((1U << old % 8) - 1));
        }
        for (const FieldBytes& field : fields_) {
            const ColumnPlace& place = PlaceOf(field);
            PutMaskBit(out_[mask + place.number / 8], place, field.bytes);
        }
    }

    const RowShape& shape_;
    const RowView& row_;
    ByteView bytes_;
    std::span<const FieldBytes> fields_;
    ByteVector& out_;
    std::size_t start_;
    unsigned columns_;
    unsigned variables_;
};

}  // namespace

bool FitsInPlace(const RowShape& shape, const RowView& row, std::span<const FieldBytes> fields) {
    const std::size_t end = std::min(FixedEnd(row), row.OffsetTable());
    return std::ranges::all_of(fields, [&](const FieldBytes& field) {
        const ColumnPlace& place = shape.Columns()[field.place];
        if (!place.fixed || field.bytes == nullptr) {
            return false;
        }
        const bool inside = place.boolean || (2 + std::size_t{place.offset} + place.length <= end &&
                                              field.bytes->size() == place.length);
        return place.number < row.ColumnCount() && inside;
    });
}

void PatchInPlace(const RowShape& shape, std::span<std::uint8_t> row, std::span<const FieldBytes> fields) {
    const std::size_t mask = row.size() - (U16(row, 0) + 7U) / 8;
    for (const FieldBytes& field : fields) {
        const ColumnPlace& place = shape.Columns()[field.place];
        PutMaskBit(row[mask + place.number / 8], place, field.bytes);
        if (!place.boolean) {
            std::copy_n(field.bytes->begin(), place.length,
                        row.begin() + static_cast<std::ptrdiff_t>(2 + std::size_t{place.offset}));
        }
    }
}

void AppendPatchedRow(const RowShape& shape, const RowView& row, ByteView bytes,
                      std::span<const FieldBytes> fields, ByteVector& out) {
    Patch(shape, row, bytes, fields, out).Append();
}

}  // namespace tavrel::jet
