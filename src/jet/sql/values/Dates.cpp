#include "jet/sql/values/Dates.h"

#include <array>
#include <charconv>
#include <cmath>
#include <ctime>
#include <utility>
#include <vector>

#include "jet/sql/values/SqlErrors.h"
#include "text/Case.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
constexpr std::int64_t kDayZero = 693899;  ///< 1899-12-30, counted from 0000-03-01 as day 0
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
/// Two-digit years from here on belong to the twentieth century.
constexpr int kCenturyTurn = 30;

bool IsLeap(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int DaysOfMonth(int year, int month) {
    static constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeap(year) ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

/// Days since 1899-12-30; years begin in March, so that the leap day comes last.
std::int64_t DaysFromParts(int year, int month, int day) {
    const std::int64_t y = month <= 2 ? year - 1 : year;
    const std::int64_t monthFromMarch = (month + 9) % 12;
    const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
    return y * 365 + y / 4 - y / 100 + y / 400 + dayOfYear - kDayZero;
}

void SetDay(DateParts& parts, std::int64_t days) {
    const std::int64_t day = days + kDayZero;
    const std::int64_t era = day / 146097;
    const std::int64_t dayOfEra = day % 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    parts.day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    parts.month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    parts.year = static_cast<int>(yearOfEra + era * 400 + (parts.month <= 2 ? 1 : 0));
}

struct PartNumber {
    int value = 0;
    std::size_t digits = 0;
};

/// Numbers with one kind of separator between them; nothing when anything else stands there.
std::optional<std::vector<PartNumber>> SplitNumbers(std::string_view text, std::string_view separators) {
    std::vector<PartNumber> numbers;
    for (;;) {
        PartNumber number;
        const char* const end = text.data() + text.size();
        const auto result = std::from_chars(text.data(), end, number.value);
        if (result.ec != std::errc{} || text.front() == '-' || numbers.size() == 3) {
            return std::nullopt;
        }
        number.digits = static_cast<std::size_t>(result.ptr - text.data());
        numbers.push_back(number);
        text.remove_prefix(number.digits);
        if (text.empty()) {
            return numbers;
        }
        if (separators.find(text.front()) == std::string_view::npos) {
            return std::nullopt;
        }
        text.remove_prefix(1);
        if (text.empty()) {
            return std::nullopt;
        }
    }
}

int FullYear(const PartNumber& year) {
    if (year.digits > 2) {
        return year.value;
    }
    return year.value + (year.value < kCenturyTurn ? 2000 : 1900);
}

bool SetDate(DateParts& parts, std::string_view text, DateOrder order) {
    const auto numbers = SplitNumbers(text, "-/");
    if (!numbers || numbers->size() != 3) {
        return false;
    }
    const PartNumber first = (*numbers)[0];
    const PartNumber second = (*numbers)[1];
    const PartNumber third = (*numbers)[2];
    const bool yearLast = third.digits > 2 || (first.digits <= 2 && order == DateOrder::MonthFirst);
    parts.year = FullYear(yearLast ? third : first);
    parts.month = yearLast ? first.value : second.value;
    parts.day = yearLast ? second.value : third.value;
    if (yearLast && parts.month > 12) {
        std::swap(parts.month, parts.day);
    }
    return true;
}

bool SetTime(DateParts& parts, std::string_view text) {
    const auto numbers = SplitNumbers(text, ":");
    if (!numbers || numbers->size() < 2) {
        return false;
    }
    parts.hour = (*numbers)[0].value;
    parts.minute = (*numbers)[1].value;
    parts.second = numbers->size() == 3 ? (*numbers)[2].value : 0;
    return true;
}

enum class Half : std::uint8_t { None, Morning, Afternoon };

Half HalfOfDay(std::string_view word) {
    const std::string upper = text::Upper(word);
    if (upper == "AM" || word == "오전") {
        return Half::Morning;
    }
    return upper == "PM" || word == "오후" ? Half::Afternoon : Half::None;
}

bool ApplyHalf(DateParts& parts, Half half) {
    if (half == Half::None) {
        return true;
    }
    if (parts.hour < 1 || parts.hour > 12) {
        return false;
    }
    parts.hour = parts.hour % 12 + (half == Half::Afternoon ? 12 : 0);
    return true;
}

/// What was met in a text so far; each at most once.
struct Found {
    bool date = false;
    bool time = false;
    Half half = Half::None;
};

bool AddWord(DateParts& parts, Found& found, std::string_view word, DateOrder order) {
    if (const Half half = HalfOfDay(word); half != Half::None) {
        return std::exchange(found.half, half) == Half::None;
    }
    if (word.find(':') != std::string_view::npos) {
        return !std::exchange(found.time, true) && SetTime(parts, word);
    }
    return !std::exchange(found.date, true) && SetDate(parts, word, order);
}

void AppendNumber(std::string& out, int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    out.append(digits.size() < width ? width - digits.size() : 0, '0').append(digits);
}

}  // namespace

std::optional<Date> ParseDateText(std::string_view text, DateOrder order) {
    DateParts parts;
    Found found;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(' '), text.size());
        if (length > 0 && !AddWord(parts, found, text.substr(0, length), order)) {
            return std::nullopt;
        }
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    if ((!found.date && !found.time) || (found.half != Half::None && !found.time) ||
        !ApplyHalf(parts, found.half)) {
        return std::nullopt;
    }
    return DateOf(parts);
}

std::string DateText(const Date& date) {
    const DateParts parts = PartsOf(date);
    const bool time = parts.hour != 0 || parts.minute != 0 || parts.second != 0;
    const bool day = !time || parts.year != 1899 || parts.month != 12 || parts.day != 30;
    std::string out;
    if (day) {
        AppendNumber(out, parts.year, 4);
        AppendNumber(out += '-', parts.month, 2);
        AppendNumber(out += '-', parts.day, 2);
    }
    if (time) {
        AppendNumber(day ? out += ' ' : out, parts.hour, 2);
        AppendNumber(out += ':', parts.minute, 2);
        AppendNumber(out += ':', parts.second, 2);
    }
    return out;
}

DateParts PartsOf(const Date& date) {
    // Before day 0 the fraction still counts forward from the start of the day.
    double day = std::trunc(date.days);
    auto second =
        static_cast<std::int64_t>(std::nearbyint(std::fabs(date.days - day) * double{kSecondsOfDay}));
    if (second == kSecondsOfDay) {
        second = 0;
        day += 1;
    }
    if (!(day >= static_cast<double>(DaysFromParts(kFirstYear, 1, 1)) &&
          day <= static_cast<double>(DaysFromParts(kLastYear, 12, 31)))) {
        throw MakeError(sqlErrors::kNumberOverflow);
    }
    DateParts parts;
    SetDay(parts, static_cast<std::int64_t>(day));
    parts.hour = static_cast<int>(second / 3600);
    parts.minute = static_cast<int>(second / 60 % 60);
    parts.second = static_cast<int>(second % 60);
    return parts;
}

std::optional<Date> DateOf(const DateParts& parts) {
    const bool valid = parts.year >= kFirstYear && parts.year <= kLastYear && parts.month >= 1 &&
                       parts.month <= 12 && parts.day >= 1 && parts.hour >= 0 && parts.hour < 24 &&
                       parts.minute >= 0 && parts.minute < 60 && parts.second >= 0 && parts.second < 60;
    if (!valid || parts.day > DaysOfMonth(parts.year, parts.month)) {
        return std::nullopt;
    }
    const auto day = static_cast<double>(DaysFromParts(parts.year, parts.month, parts.day));
    const double fraction = (parts.hour * 3600 + parts.minute * 60 + parts.second) / double{kSecondsOfDay};
    return Date{day < 0 ? day - fraction : day + fraction};
}

Date LocalNow() {
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    if (local == nullptr) {
        return Date{};
    }
    DateParts parts{local->tm_year + 1900, local->tm_mon + 1, local->tm_mday,
                    local->tm_hour,        local->tm_min,     std::min(local->tm_sec, 59)};
    return DateOf(parts).value_or(Date{});
}

}  // namespace tavrel::jet::sql
