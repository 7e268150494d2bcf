// FORMAT: a subset that serves codes, amounts and days.  A date pattern is one that a Date meets.
#include <algorithm>
#include <cmath>

#include "jet/catalog/NumberConversion.h"
#include "jet/sql/expression/Functions.h"
#include "jet/sql/values/Dates.h"
#include "jet/sql/values/NumberText.h"
#include "text/Case.h"
#include "text/Format.h"

namespace tavrel::jet::sql {

namespace {

constexpr int kMostFormatDecimals = 15;

std::string Padded(int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

std::string DatePart(const DateParts& parts, char letter, std::size_t count) {
    switch (letter) {
        case 'y':
            return count > 2 ? Padded(parts.year, 4) : Padded(parts.year % 100, 2);
        case 'm':
            return Padded(parts.month, std::min<std::size_t>(count, 2));
        case 'd':
            return Padded(parts.day, std::min<std::size_t>(count, 2));
        case 'h':
            return Padded(parts.hour, std::min<std::size_t>(count, 2));
        case 'n':
            return Padded(parts.minute, std::min<std::size_t>(count, 2));
        default:
            return Padded(parts.second, std::min<std::size_t>(count, 2));
    }
}

/// A half of the day; hours count to twelve beside one.
struct HalfDay {
    std::string_view pattern, morning, afternoon;
};
constexpr HalfDay kHalfDays[] = {{"AM/PM", "AM", "PM"}, {"AMPM", "오전", "오후"}, {"A/P", "A", "P"}};

const HalfDay* HalfDayAt(std::string_view rest) {
    const auto* found = std::ranges::find_if(kHalfDays, [rest](const HalfDay& half) {
        return text::EqualIgnoringCase(rest.substr(0, half.pattern.size()), half.pattern);
    });
    return found == std::end(kHalfDays) ? nullptr : found;
}

bool HasHalfDay(std::string_view pattern) {
    while (!pattern.empty() && HalfDayAt(pattern) == nullptr) {
        pattern.remove_prefix(1);
    }
    return !pattern.empty();
}

/// m behind an hour means minutes.
std::string FormatDate(const Date& date, std::string_view pattern) {
    DateParts parts = PartsOf(date);
    const bool afternoon = parts.hour >= 12;
    parts.hour = HasHalfDay(pattern) ? (parts.hour + 11) % 12 + 1 : parts.hour;
    std::string out;
    char before = 0;
    for (std::size_t at = 0; at < pattern.size();) {
        if (const HalfDay* half = HalfDayAt(pattern.substr(at))) {
            out += afternoon ? half->afternoon : half->morning;
            at += half->pattern.size();
            continue;
        }
        char letter =
            static_cast<char>(pattern[at] >= 'A' && pattern[at] <= 'Z' ? pattern[at] + 32 : pattern[at]);
        if (std::string_view("ymdhns").find(letter) == std::string_view::npos) {
            out += pattern[at++];
            continue;
        }
        const std::size_t end =
            std::min(pattern.find_first_not_of(pattern.substr(at, 1), at), pattern.size());
        letter = letter == 'm' && before == 'h' ? 'n' : letter;
        out += DatePart(parts, letter, end - at);
        before = letter;
        at = end;
    }
    return out;
}

/// What a number pattern asks for: digits before and behind the point, and the text round them.
struct NumberPattern {
    std::string before, behind;
    std::size_t leastWhole = 0;
    int leastDecimals = 0;
    int mostDecimals = 0;
    bool thousands = false;
    bool percent = false;
    bool digits = false;
};

NumberPattern ReadPattern(std::string_view pattern) {
    NumberPattern read;
    bool point = false;
    for (const char c : pattern) {
        if (c == '0' || c == '#') {
            read.digits = true;
            read.leastWhole += !point && (c == '0' || read.leastWhole > 0) ? 1 : 0;
            read.mostDecimals += point && read.mostDecimals < kMostFormatDecimals ? 1 : 0;
            read.leastDecimals = point && c == '0' ? read.mostDecimals : read.leastDecimals;
        } else if (c == '.' && !point) {
            point = true;
        } else if (c == ',' && read.digits) {
            read.thousands = true;
        } else {
            read.percent |= c == '%';
            (read.digits ? read.behind : read.before) += c;
        }
    }
    return read;
}

std::string WithThousands(std::string whole) {
    for (std::size_t at = whole.size(); at > 3; at -= 3) {
        whole.insert(at - 3, 1, ',');
    }
    return whole;
}

std::string FormatNumber(double number, std::string_view pattern) {
    const NumberPattern read = ReadPattern(pattern);
    if (!read.digits) {
        return std::string(pattern);
    }
    const Decimal rounded = ToDecimal(std::fabs(read.percent ? number * 100 : number), 28,
                                      static_cast<unsigned>(read.mostDecimals));
    const std::string text = DecimalText(rounded);
    std::string whole = text.substr(0, text.find('.'));
    std::string decimals = read.mostDecimals > 0 ? text.substr(whole.size() + 1) : std::string();
    while (decimals.size() > static_cast<std::size_t>(read.leastDecimals) && decimals.ends_with('0')) {
        decimals.pop_back();
    }
    whole = whole == "0" ? std::string() : whole;
    whole.insert(0, whole.size() < read.leastWhole ? read.leastWhole - whole.size() : 0, '0');
    whole = read.thousands ? WithThousands(std::move(whole)) : whole;
    const bool negative = number < 0 && rounded.words != decltype(rounded.words){};
    return (negative ? "-" : "") + read.before + whole + (decimals.empty() ? "" : "." + decimals) +
           read.behind;
}

}  // namespace

std::string FormatValue(const Value& value, std::string_view pattern) {
    if (const auto* date = std::get_if<Date>(&value)) {
        return FormatDate(*date, pattern);
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        const auto number = ReadNumber(*text);
        return number ? FormatNumber(DoubleOf(*number), pattern) : *text;
    }
    return FormatNumber(NumberOf(value), pattern);
}

}  // namespace tavrel::jet::sql
