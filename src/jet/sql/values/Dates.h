// Dates as texts and as parts.  A Date counts days from 1899-12-30; years run from 100 to 9999.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "jet/catalog/Value.h"

namespace tavrel::jet::sql {

struct DateParts {
    int year = 1899, month = 12, day = 30;
    int hour = 0, minute = 0, second = 0;
};

/// Which part comes first where a text leaves it open: #1/2/2024# is January, the text 24/1/2 is of 2024.
enum class DateOrder : std::uint8_t { MonthFirst, YearFirst };

/// A date, a time, or both: parts joined by - or /, time parts by a colon, AM/PM or 오전/오후 beside the
/// time.  Nothing when the text is no date.
std::optional<Date> ParseDateText(std::string_view text, DateOrder order);

/// yyyy-mm-dd, hh:nn:ss, or both with a blank between: whatever part is not zero.
std::string DateText(const Date& date);

/// The calendar day and the time rounded to whole seconds.  Throws 3349 beyond the range of years.
DateParts PartsOf(const Date& date);
/// Nothing when there is no such day or time.
std::optional<Date> DateOf(const DateParts& parts);

/// The local clock, whole seconds.
Date LocalNow();

}  // namespace tavrel::jet::sql
