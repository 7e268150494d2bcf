#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "jet/catalog/NumberConversion.h"
#include "jet/sql/expression/Assignment.h"
#include "jet/sql/expression/Functions.h"
#include "jet/sql/values/NumberText.h"
#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

constexpr int kMostDecimals = 15;

void SetConverted(ColumnType type, const Value& value, Value& out) {
    TableColumn target;
    target.type = type;
    target.size = std::numeric_limits<unsigned>::max();
    ConvertFor(target, value, out);
}

template <ColumnType type>
void Convert(Arguments arguments, Value& out) {
    SetConverted(type, *arguments[0], out);
}

/// VAL: the number at the front of a text, blanks left out; 0 when there is none.
void Val(Arguments arguments, Value& out) {
    std::string text = ValueText(*arguments[0]);
    std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ','; });
    const auto isPart = [](char c) {
        return (c >= '0' && c <= '9') || std::string_view("+-.eEdD").find(c) != std::string_view::npos;
    };
    text.erase(std::ranges::find_if_not(text, isPart), text.end());
    for (; !text.empty() && text.back() != '-'; text.pop_back()) {
        if (const auto number = ReadNumber(text)) {
            out = DoubleOf(*number);
            return;
        }
    }
    out = 0.0;
}

/// STR: a blank stands where the sign would.
void Str(Arguments arguments, Value& out) {
    const double number = NumberOf(*arguments[0]);
    SetText(out, (number < 0 ? "" : " ") + DoubleText(number));
}

/// Keeps the type of its argument.
void SetLikeArgument(const Value& like, double number, Value& out) {
    const StaticType type = TypeOf(like);
    SetConverted(type == ColumnType::Text || type == ColumnType::Boolean ? ColumnType::Double
                                                                         : type.value_or(ColumnType::Double),
                 number, out);
}

void Abs(Arguments arguments, Value& out) {
    const double number = NumberOf(*arguments[0]);
    if (const auto* decimal = std::get_if<Decimal>(arguments[0])) {
        Decimal positive = *decimal;
        positive.negative = false;
        out = positive;
    } else {
        SetLikeArgument(*arguments[0], std::fabs(number), out);
    }
}

/// INT goes down, FIX towards zero.
void Int(Arguments arguments, Value& out) {
    SetLikeArgument(*arguments[0], std::floor(NumberOf(*arguments[0])), out);
}
void Fix(Arguments arguments, Value& out) {
    SetLikeArgument(*arguments[0], std::trunc(NumberOf(*arguments[0])), out);
}

void Sgn(Arguments arguments, Value& out) {
    const double number = NumberOf(*arguments[0]);
    out = std::int64_t{number > 0 ? 1 : number < 0 ? -1 : 0};
}

/// Half to even.
void Round(Arguments arguments, Value& out) {
    const std::int32_t decimals = arguments.size() > 1 ? LongOf(*arguments[1]) : 0;
    if (decimals < 0) {
        throw MakeError(sqlErrors::kInvalidCall);
    }
    const double number = NumberOf(*arguments[0]);
    const double unit = std::pow(10.0, std::min(decimals, kMostDecimals));
    const double scaled = number * unit;
    SetLikeArgument(*arguments[0], std::isfinite(scaled) ? std::nearbyint(scaled) / unit : number, out);
}

void IsNullFunction(Arguments arguments, Value& out) {
    out = IsNull(*arguments[0]);
}

/// NZ(value [, instead])
void Nz(Arguments arguments, Value& out) {
    if (!IsNull(*arguments[0])) {
        out = *arguments[0];
    } else {
        out = arguments.size() > 1 ? *arguments[1] : Value(std::string());
    }
}

std::mt19937& Random() {
    static std::mt19937 generator{std::random_device{}()};
    return generator;
}

/// Random autonumbers have these as their defaults.
void GenUniqueId(Arguments, Value& out) {
    out = std::int64_t{static_cast<std::int32_t>(Random()())};
}
void GenGuid(Arguments, Value& out) {
    jet::Guid guid;
    std::ranges::generate(guid.bytes, [] { return static_cast<std::uint8_t>(Random()()); });
    guid.bytes[7] = static_cast<std::uint8_t>((guid.bytes[7] & 0x0F) | 0x40);  // version 4: random
    guid.bytes[8] = static_cast<std::uint8_t>((guid.bytes[8] & 0x3F) | 0x80);
    out = guid;
}

constexpr StaticType kLong = ColumnType::Long;
constexpr StaticType kDouble = ColumnType::Double;

const Function kNumberFunctions[] = {
    {"VAL", 1, 1, kDouble, true, Val},
    {"STR", 1, 1, ColumnType::Text, true, Str},
    {"CSTR", 1, 1, ColumnType::Text, true, Convert<ColumnType::Memo>},
    {"CLNG", 1, 1, kLong, true, Convert<ColumnType::Long>},
    {"CINT", 1, 1, ColumnType::Integer, true, Convert<ColumnType::Integer>},
    {"CDBL", 1, 1, kDouble, true, Convert<ColumnType::Double>},
    {"CCUR", 1, 1, ColumnType::Currency, true, Convert<ColumnType::Currency>},
    {"CBOOL", 1, 1, ColumnType::Boolean, true, Convert<ColumnType::Boolean>},
    {"CDATE", 1, 1, ColumnType::Date, true, Convert<ColumnType::Date>},
    {"ABS", 1, 1, std::nullopt, true, Abs},
    {"INT", 1, 1, std::nullopt, true, Int},
    {"FIX", 1, 1, std::nullopt, true, Fix},
    {"SGN", 1, 1, kLong, true, Sgn},
    {"ROUND", 1, 2, std::nullopt, true, Round},
    {"ISNULL", 1, 1, ColumnType::Boolean, false, IsNullFunction},
    {"NZ", 1, 2, std::nullopt, false, Nz},
    {"GENUNIQUEID", 0, 0, kLong, false, GenUniqueId},
    {"GENGUID", 0, 0, ColumnType::Guid, false, GenGuid},
};

}  // namespace

std::span<const Function> NumberFunctions() {
    return kNumberFunctions;
}

}  // namespace tavrel::jet::sql
