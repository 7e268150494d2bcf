#include "jet/sql/expression/Assignment.h"

#include <algorithm>
#include <limits>

#include "jet/catalog/NumberConversion.h"
#include "jet/sql/values/Dates.h"
#include "jet/sql/values/NumberText.h"
#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet::sql {

namespace {

struct WholeRange {
    ColumnType type;
    std::int64_t lowest, highest;
};
constexpr WholeRange kRanges[] = {
    {ColumnType::Byte, 0, 255},
    {ColumnType::Integer, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()},
    {ColumnType::Long, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()},
};

[[noreturn]] void ThrowMismatch() {
    throw MakeError(errors::kTypeMismatch);
}

NumberText NumberIn(const std::string& text) {
    auto number = ReadNumber(text);
    if (!number) {
        ThrowMismatch();
    }
    return std::move(*number);
}

std::int64_t WholeFor(ColumnType type, const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    const std::int64_t whole = text != nullptr ? ScaledOf(NumberIn(*text), 0) : ToInteger(value);
    const auto* range = std::ranges::find(kRanges, type, &WholeRange::type);
    if (whole < range->lowest || whole > range->highest) {
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    return whole;
}

Decimal DecimalFor(const TableColumn& column, const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr) {
        return ToDecimal(value, column.precision, column.scale);
    }
    return ToDecimal(DecimalOf(NumberIn(*text)), column.precision, column.scale);
}

Currency CurrencyFor(const Value& value) {
    constexpr unsigned kDecimals = 4;
    const auto* text = std::get_if<std::string>(&value);
    return {text != nullptr ? ScaledOf(NumberIn(*text), kDecimals) : ToCurrency(value)};
}

Date DateFor(const Value& value) {
    Date date;
    if (const auto* text = std::get_if<std::string>(&value)) {
        const auto parsed = ParseDateText(*text, DateOrder::YearFirst);
        if (!parsed) {
            ThrowMismatch();
        }
        return *parsed;
    }
    date.days = ToDouble(value);
    PartsOf(date);  // throws beyond the years that there are
    return date;
}

bool TruthFor(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        for (const std::string_view word : {"TRUE", "YES", "ON", "FALSE", "NO", "OFF"}) {
            if (text::EqualIgnoringCase(*text, word)) {
                return word == "TRUE" || word == "YES" || word == "ON";
            }
        }
    }
    return TruthOf(value) == Truth::True;
}

void TextFor(const TableColumn& column, const Value& value, Value& out) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        SetText(out, *text);
    } else {
        SetText(out, {});
        AppendText(value, std::get<std::string>(out));
    }
    const std::string& text = std::get<std::string>(out);
    // A text never has more UTF-16 units than bytes.
    if (column.type == ColumnType::Text && text.size() > column.size &&
        text::Utf16Length(text) > column.size) {
        throw MakeError(errors::kFieldTooSmall);
    }
}

/// A text goes into a binary column as its UTF-16LE bytes.
ByteVector BytesFor(const TableColumn& column, const Value& value) {
    ByteVector bytes;
    if (const auto* held = std::get_if<ByteVector>(&value)) {
        bytes = *held;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        for (const char16_t unit : text::Utf16FromUtf8(*text)) {
            AppendU16(bytes, unit);
        }
    } else {
        ThrowMismatch();
    }
    if (column.type != ColumnType::Ole && bytes.size() > column.size) {
        throw MakeError(errors::kFieldTooSmall);
    }
    return bytes;
}

/// {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}, braces optional.
Guid GuidFor(const Value& value) {
    if (const auto* guid = std::get_if<Guid>(&value)) {
        return *guid;
    }
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr) {
        ThrowMismatch();
    }
    static constexpr std::array<std::size_t, 16> kPlaces = {3, 2, 1,  0,  5,  4,  7,  6,
                                                            8, 9, 10, 11, 12, 13, 14, 15};
    std::string digits;
    std::ranges::copy_if(*text, std::back_inserter(digits),
                         [](char c) { return c != '{' && c != '}' && c != '-'; });
    Guid guid;
    const auto nibble = [](char c) {
        const std::size_t place = std::string_view("0123456789ABCDEF0123456789abcdef").find(c);
        return place == std::string_view::npos ? -1 : static_cast<int>(place % 16);
    };
    if (digits.size() != 32 || std::ranges::any_of(digits, [&](char c) { return nibble(c) < 0; })) {
        ThrowMismatch();
    }
    for (std::size_t i = 0; i < kPlaces.size(); ++i) {
        guid.bytes[kPlaces[i]] =
            static_cast<std::uint8_t>(nibble(digits[2 * i]) << 4 | nibble(digits[2 * i + 1]));
    }
    if (GuidText(guid).size() < text->size()) {
        ThrowMismatch();
    }
    return guid;
}

}  // namespace

void ConvertFor(const TableColumn& column, const Value& value, Value& out) {
    if (IsNull(value)) {
        out = column.type == ColumnType::Boolean ? Value(false) : Value(Null{});
        return;
    }
    const auto* text = std::get_if<std::string>(&value);
    switch (column.type) {
        case ColumnType::Boolean:
            out = TruthFor(value);
            return;
        case ColumnType::Byte:
        case ColumnType::Integer:
        case ColumnType::Long:
            out = WholeFor(column.type, value);
            return;
        case ColumnType::Currency:
            out = CurrencyFor(value);
            return;
        case ColumnType::Single:
            out = text != nullptr ? ToSingle(NumberOf(value)) : ToSingle(value);
            return;
        case ColumnType::Double:
            out = NumberOf(value);
            return;
        case ColumnType::Date:
            out = DateFor(value);
            return;
        case ColumnType::Numeric:
            out = DecimalFor(column, value);
            return;
        case ColumnType::Guid:
            out = GuidFor(value);
            return;
        case ColumnType::Text:
        case ColumnType::Memo:
            return TextFor(column, value, out);
        default:
            out = BytesFor(column, value);
    }
}

void CheckRules(const std::string& table, const TableColumn& column, const Value& value) {
    if (column.required && IsNull(value) && !column.autonumber) {
        throw MakeError(errors::kRequiredField, {table + "." + column.name});
    }
    const auto* text = std::get_if<std::string>(&value);
    if (column.refusesEmptyText && text != nullptr && text->empty()) {
        throw MakeError(errors::kZeroLength, {table + "." + column.name});
    }
}

std::optional<Value> KeyFor(const TableColumn& column, const Value& value, const TextComparer& texts) {
    if (IsNull(value)) {
        return std::nullopt;
    }
    TableColumn unlimited = column;
    unlimited.size = std::numeric_limits<unsigned>::max();
    try {
        Value key;
        ConvertFor(unlimited, value, key);
        return CompareValues(key, value, texts) == 0 ? std::optional(std::move(key)) : std::nullopt;
    } catch (const Error&) {  // out of the column's range
        return std::nullopt;
    }
}

}  // namespace tavrel::jet::sql
