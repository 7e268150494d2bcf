#include <cmath>

#include "jet/sql/expression/Assignment.h"
#include "jet/sql/expression/Functions.h"
#include "jet/sql/values/Dates.h"

namespace tavrel::jet::sql {

namespace {

/// Texts and serial numbers count as the dates that they stand for.
DateParts PartsOfArgument(const Value& value) {
    TableColumn target;
    target.type = ColumnType::Date;
    Value date;
    ConvertFor(target, value, date);
    return PartsOf(std::get<Date>(date));
}

template <int DateParts::*part>
void Part(Arguments arguments, Value& out) {
    out = std::int64_t{PartsOfArgument(*arguments[0]).*part};
}

/// The day alone, the time alone: of the clock's reading that comes as the argument.
void Day(Arguments arguments, Value& out) {
    out = Date{std::trunc(std::get<Date>(*arguments[0]).days)};
}
void Time(Arguments arguments, Value& out) {
    const double days = std::get<Date>(*arguments[0]).days;
    out = Date{std::fabs(days - std::trunc(days))};
}
void Now(Arguments arguments, Value& out) {
    out = *arguments[0];
}

constexpr StaticType kDate = ColumnType::Date;
constexpr StaticType kShort = ColumnType::Integer;

// NOW, DATE and TIME take no argument where they are written; the clock is handed to them.
const Function kDateFunctions[] = {
    {"NOW", 0, 0, kDate, false, Now},
    {"DATE", 0, 0, kDate, false, Day},
    {"TIME", 0, 0, kDate, false, Time},
    {"YEAR", 1, 1, kShort, true, Part<&DateParts::year>},
    {"MONTH", 1, 1, kShort, true, Part<&DateParts::month>},
    {"DAY", 1, 1, kShort, true, Part<&DateParts::day>},
    {"HOUR", 1, 1, kShort, true, Part<&DateParts::hour>},
    {"MINUTE", 1, 1, kShort, true, Part<&DateParts::minute>},
    {"SECOND", 1, 1, kShort, true, Part<&DateParts::second>},
};

}  // namespace

std::span<const Function> DateFunctions() {
    return kDateFunctions;
}

}  // namespace tavrel::jet::sql
