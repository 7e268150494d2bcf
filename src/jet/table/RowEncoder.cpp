#include "jet/table/RowEncoder.h"

#include <bit>
#include <cmath>
#include <limits>

#include "jet/catalog/NumberConversion.h"
#include "jet/storage/Rc4.h"
#include "jet/table/StoredText.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

/// The least date, 100-01-01, and the first day after the last, 9999-12-31.
constexpr double kFirstDay = -657434;
constexpr double kEndOfDays = 2958466;

[[noreturn]] void ThrowTypeMismatch(const Column& column) {
    throw MakeError(errors::kTypeMismatch, {}, column.name);
}

ByteVector LittleEndian(std::uint64_t bits, std::size_t length) {
    ByteVector out(length);
    for (std::size_t i = 0; i < length; ++i) {
        out[i] = static_cast<std::uint8_t>(bits >> (8 * i));
    }
    return out;
}

struct IntegerRange {
    ColumnType type;
    std::int64_t least;
    std::int64_t greatest;
};
constexpr IntegerRange kIntegerRanges[] = {
    {ColumnType::Byte, 0, std::numeric_limits<std::uint8_t>::max()},
    {ColumnType::Integer, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()},
    {ColumnType::Long, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()},
};

ByteVector EncodeInteger(const Column& column, const Value& value) {
    const std::int64_t number = ToInteger(value);
    for (const IntegerRange& range : kIntegerRanges) {
        if (range.type == column.type && (number < range.least || number > range.greatest)) {
            throw MakeError(kNumberOutOfRange, {}, column.name);
        }
    }
    return LittleEndian(static_cast<std::uint64_t>(number), FixedLength(column.type));
}

ByteVector EncodeDate(const Column& column, const Value& value) {
    const double days = ToDouble(value);
    if (!(days >= kFirstDay && days < kEndOfDays)) {
        throw MakeError(kNumberOutOfRange, {}, column.name);
    }
    return LittleEndian(BitsOf(days), FixedLength(column.type));
}

ByteVector EncodeDecimal(const Column& column, const Value& value) {
    const Decimal decimal = ToDecimal(value, column.precision, column.scale);
    ByteVector out;
    AppendU8(out, decimal.negative ? 0x80 : 0x00);
    for (const std::uint32_t word : decimal.words) {
        AppendU32(out, word);
    }
    return out;
}

ByteVector EncodeText(const Column& column, const Value& value) {
    std::u16string units = TextOf(value);
    const std::size_t limit = column.length / 2U;
    if (units.size() > limit) {
        throw MakeError(errors::kFieldTooSmall, {}, column.name);
    }
    if (column.Fixed()) {
        units.resize(limit, u' ');
        return PlainText(units);
    }
    return StoredText(units, column.Compressed(), TextKind::Column);
}

ByteVector EncodeBinary(const Column& column, const Value& value, std::uint32_t ownerKey) {
    ByteVector bytes = BytesOf(value);
    if (bytes.size() > column.length) {
        throw MakeError(errors::kFieldTooSmall, {}, column.name);
    }
    if (column.Fixed()) {
        bytes.resize(column.length, 0);
    }
    if (column.Enciphered()) {
        Rc4(ownerKey, bytes);
    }
    return bytes;
}

ByteVector EncodeGuid(const Column& column, const Value& value) {
    const auto* guid = std::get_if<Guid>(&value);
    if (guid == nullptr) {
        ThrowTypeMismatch(column);
    }
    return {guid->bytes.begin(), guid->bytes.end()};
}

}  // namespace

std::u16string TextOf(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr) {
        throw MakeError(errors::kTypeMismatch);
    }
    return text::Utf16FromUtf8(*text);
}

const ByteVector& BytesOf(const Value& value) {
    const auto* bytes = std::get_if<ByteVector>(&value);
    if (bytes == nullptr) {
        throw MakeError(errors::kTypeMismatch);
    }
    return *bytes;
}

ByteVector EncodeField(const Column& column, const Value& value, std::uint32_t ownerKey) {
    switch (column.type) {
        case ColumnType::Boolean:
            return {static_cast<std::uint8_t>(ToDouble(value) != 0 ? 1 : 0)};
        case ColumnType::Byte:
        case ColumnType::Integer:
        case ColumnType::Long:
            return EncodeInteger(column, value);
        case ColumnType::Currency:
            return LittleEndian(static_cast<std::uint64_t>(ToCurrency(value)), FixedLength(column.type));
        case ColumnType::Single:
            return LittleEndian(std::bit_cast<std::uint32_t>(ToSingle(value)), FixedLength(column.type));
        case ColumnType::Double:
            return LittleEndian(BitsOf(ToDouble(value)), FixedLength(column.type));
        case ColumnType::Date:
            return EncodeDate(column, value);
        case ColumnType::Text:
            return EncodeText(column, value);
        case ColumnType::Binary:
        case ColumnType::FixedBinary:
            return EncodeBinary(column, value, ownerKey);
        case ColumnType::Guid:
            return EncodeGuid(column, value);
        case ColumnType::Numeric:
            return EncodeDecimal(column, value);
        case ColumnType::Ole:
        case ColumnType::Memo:
            break;
    }
    ThrowTypeMismatch(column);
}

}  // namespace tavrel::jet
