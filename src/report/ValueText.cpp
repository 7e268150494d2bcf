#include "report/ValueText.h"

#include <algorithm>
#include <cmath>

#include "text/Format.h"

namespace tavrel::report {

namespace {

template <class... Cases>
struct Overload : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overload(Cases...) -> Overload<Cases...>;

std::string ReversedHex(jet::ByteView stored) {
    jet::ByteVector bytes(stored.begin(), stored.end());
    std::reverse(bytes.begin(), bytes.end());
    return text::Hex(bytes);
}

std::string CanonicalQuoted(const std::string& value) {
    std::string out = "\"";
    out.reserve(value.size() + 2);
    for (const char c : value) {
        switch (c) {
            case '\\':
                out += "\\\\";
                break;
            case '|':
                out += "\\p";
                break;
            case '\n':
                out += "\\n";
                break;
            default:
                out += c;
        }
    }
    return out += '"';
}

struct CalendarDay {
    int year;
    unsigned month, day;
};

/// Proleptic Gregorian calendar; `days` since 1899-12-30.
CalendarDay DayOf(std::int64_t days) {
    constexpr std::int64_t kDaysFrom0000March1 = 693899;  // to 1899-12-30
    constexpr std::int64_t kEra = 146097;                 // days of 400 years
    const std::int64_t z = days + kDaysFrom0000March1;
    const std::int64_t era = (z >= 0 ? z : z - kEra + 1) / kEra;
    const std::int64_t dayOfEra = z - era * kEra;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t shiftedMonth = (5 * dayOfYear + 2) / 153;
    const auto day = static_cast<unsigned>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
    const auto month = static_cast<unsigned>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
    return {
        .year = static_cast<int>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0)), .month = month, .day = day};
}

std::string Digits(std::int64_t value, std::size_t width) {
    const std::string digits = std::to_string(value);
    return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
}

}  // namespace

std::string CanonicalText(jet::ByteView stored, const jet::Value& value) {
    return std::visit(
        Overload{[](const jet::Null&) -> std::string { return "N"; },
                 [](bool v) -> std::string { return v ? "1" : "0"; },
                 [](std::int64_t v) { return std::to_string(v); }, [&](float) { return ReversedHex(stored); },
                 [&](double) { return ReversedHex(stored); },
                 [](const jet::Currency& v) { return std::to_string(v.scaled); },
                 [&](const jet::Date&) { return ReversedHex(stored); },
                 [](const std::string& v) { return CanonicalQuoted(v); },
                 [](const jet::ByteVector& v) { return text::Hex(v); },
                 [](const jet::Guid& v) { return jet::GuidText(v); },
                 [](const jet::Decimal& v) { return jet::DecimalText(v); }},
        value);
}

void WriteJsonValue(JsonWriter& json, const jet::Value& value) {
    std::visit(
        Overload{[&](const jet::Null&) { json.Null(); }, [&](bool v) { json.Boolean(v); },
                 [&](std::int64_t v) { json.Integer(v); },
                 [&](float v) { json.Double(static_cast<double>(v)); }, [&](double v) { json.Double(v); },
                 [&](const jet::Currency& v) { json.String(text::FormatScaled(v.scaled, 4)); },
                 [&](const jet::Date& v) { json.Double(v.days); },
                 [&](const std::string& v) { json.String(v); },
                 [&](const jet::ByteVector& v) {
                     json.BeginObject();
                     json.Member("hex", text::Hex(v));
                     json.EndObject();
                 },
                 [&](const jet::Guid& v) { json.String(jet::GuidText(v)); },
                 [&](const jet::Decimal& v) { json.String(jet::DecimalText(v)); }},
        value);
}

std::string PlainText(const jet::Value& value) {
    return std::visit(
        Overload{[](const jet::Null&) -> std::string { return {}; },
                 [](bool v) -> std::string { return v ? "true" : "false"; },
                 [](std::int64_t v) { return std::to_string(v); },
                 [](float v) { return text::FormatDouble(static_cast<double>(v)); },
                 [](double v) { return text::FormatDouble(v); },
                 [](const jet::Currency& v) { return text::FormatScaled(v.scaled, 4); },
                 [](const jet::Date& v) { return DateText(v.days); }, [](const std::string& v) { return v; },
                 [](const jet::ByteVector& v) { return text::Hex(v); },
                 [](const jet::Guid& v) { return jet::GuidText(v); },
                 [](const jet::Decimal& v) { return jet::DecimalText(v); }},
        value);
}

std::string DateText(double days) {
    constexpr double kFirstDay = -657434;  // 0100-01-01
    constexpr double kDayAfterLast = 2958466;
    constexpr std::int64_t kSecondsOfDay = 86400;
    if (!(days > kFirstDay - 1 && days < kDayAfterLast)) {
        return text::FormatDouble(days);
    }
    const double whole = std::trunc(days);
    auto seconds = static_cast<std::int64_t>(std::llround(std::fabs(days - whole) * kSecondsOfDay));
    auto day = static_cast<std::int64_t>(whole);
    if (seconds == kSecondsOfDay) {
        seconds = 0;
        ++day;
    }
    if (day < static_cast<std::int64_t>(kFirstDay) || day >= static_cast<std::int64_t>(kDayAfterLast)) {
        return text::FormatDouble(days);
    }
    const CalendarDay date = DayOf(day);
    return Digits(date.year, 4) + '-' + Digits(date.month, 2) + '-' + Digits(date.day, 2) + ' ' +
           Digits(seconds / 3600, 2) + ':' + Digits(seconds / 60 % 60, 2) + ':' + Digits(seconds % 60, 2);
}

}  // namespace tavrel::report
