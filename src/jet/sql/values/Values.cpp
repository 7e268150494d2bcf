#include "jet/sql/values/Values.h"

#include <cmath>
#include <limits>

#include "jet/catalog/NumberConversion.h"
#include "jet/sql/values/Dates.h"
#include "jet/sql/values/DecimalArithmetic.h"
#include "jet/sql/values/NumberText.h"

namespace tavrel::jet::sql {

namespace {

int Order(double a, double b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

int CompareDecimals(Decimal a, Decimal b) {
    try {
        const std::uint8_t scale = std::max(a.scale, b.scale);
        a = ToDecimal(a, kDecimalDigits, scale);
        b = ToDecimal(b, kDecimalDigits, scale);
    } catch (const Error&) {  // the two are too far apart for one scale
        return Order(ToDouble(a), ToDouble(b));
    }
    if (a.negative != b.negative) {
        return a.negative ? -1 : 1;
    }
    const int magnitude = a.words < b.words ? -1 : a.words == b.words ? 0 : 1;
    return a.negative ? -magnitude : magnitude;
}

int CompareNumbers(const Value& a, const Value& b) {
    if (a.index() == b.index()) {
        if (const auto* whole = std::get_if<std::int64_t>(&a)) {
            const std::int64_t other = std::get<std::int64_t>(b);
            return *whole < other ? -1 : *whole > other ? 1 : 0;
        }
        if (const auto* money = std::get_if<Currency>(&a)) {
            const std::int64_t other = std::get<Currency>(b).scaled;
            return money->scaled < other ? -1 : money->scaled > other ? 1 : 0;
        }
        if (const auto* decimal = std::get_if<Decimal>(&a)) {
            return CompareDecimals(*decimal, std::get<Decimal>(b));
        }
    }
    return Order(ToDouble(a), ToDouble(b));
}

template <typename Bytes>
int CompareBytes(const Bytes& a, const Bytes& b) {
    return a < b ? -1 : a == b ? 0 : 1;
}

}  // namespace

Family FamilyOf(StaticType type) {
    if (!type) {
        return Family::Any;
    }
    switch (*type) {
        case ColumnType::Text:
        case ColumnType::Memo:
            return Family::Text;
        case ColumnType::Binary:
        case ColumnType::FixedBinary:
        case ColumnType::Ole:
            return Family::Bytes;
        case ColumnType::Guid:
            return Family::Guid;
        default:
            return Family::Number;
    }
}

Family FamilyOf(const Value& value) {
    return FamilyOf(TypeOf(value));
}

StaticType TypeOf(const Value& value) {
    // In the order of Value's alternatives.
    static constexpr std::array<ColumnType, 11> kTypes = {
        ColumnType::Text,   ColumnType::Boolean,  ColumnType::Long,   ColumnType::Single,
        ColumnType::Double, ColumnType::Currency, ColumnType::Date,   ColumnType::Text,
        ColumnType::Binary, ColumnType::Guid,     ColumnType::Numeric};
    return IsNull(value) ? StaticType() : kTypes.at(value.index());
}

Truth TruthOf(const Value& value) {
    if (const auto* truth = std::get_if<bool>(&value)) {
        return ToTruth(*truth);
    }
    return IsNull(value) ? Truth::Unknown : ToTruth(NumberOf(value) != 0);
}

int CompareValues(const Value& a, const Value& b, const TextComparer& texts) {
    const Family family = FamilyOf(a);
    if (family != FamilyOf(b)) {
        throw MakeError(errors::kTypeMismatch);
    }
    switch (family) {
        case Family::Text:
            return texts.Compare(std::get<std::string>(a), std::get<std::string>(b));
        case Family::Bytes:
            return CompareBytes(std::get<ByteVector>(a), std::get<ByteVector>(b));
        case Family::Guid:
            return CompareBytes(GuidText(std::get<Guid>(a)), GuidText(std::get<Guid>(b)));
        default:
            return CompareNumbers(a, b);
    }
}

void AppendText(const Value& value, std::string& out) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        out += *text;
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        out += std::to_string(*whole);
    } else if (const auto* number = std::get_if<double>(&value)) {
        out += DoubleText(*number);
    } else if (const auto* single = std::get_if<float>(&value)) {
        out += SingleText(*single);
    } else if (const auto* money = std::get_if<Currency>(&value)) {
        out += CurrencyText(*money);
    } else if (const auto* date = std::get_if<Date>(&value)) {
        out += DateText(*date);
    } else if (const auto* truth = std::get_if<bool>(&value)) {
        out += *truth ? "-1" : "0";
    } else if (const auto* decimal = std::get_if<Decimal>(&value)) {
        out += ShortDecimalText(*decimal);
    } else if (const auto* guid = std::get_if<Guid>(&value)) {
        out += GuidText(*guid);
    } else if (!IsNull(value)) {
        throw MakeError(errors::kTypeMismatch);
    }
}

std::string ValueText(const Value& value) {
    std::string text;
    AppendText(value, text);
    return text;
}

double NumberOf(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr) {
        return ToDouble(value);
    }
    const auto number = ReadNumber(*text);
    if (!number) {
        throw MakeError(errors::kTypeMismatch);
    }
    return DoubleOf(*number);
}

std::int32_t LongOf(const Value& value) {
    const auto* whole = std::get_if<std::int64_t>(&value);
    const double number = whole != nullptr ? static_cast<double>(*whole) : std::nearbyint(NumberOf(value));
    if (!(number >= std::numeric_limits<std::int32_t>::min() &&
          number <= std::numeric_limits<std::int32_t>::max())) {
        throw MakeError(kNumberOutOfRange);
    }
    return static_cast<std::int32_t>(number);
}

}  // namespace tavrel::jet::sql
