// Values among themselves: truth, order, and the kinds that can be compared.
#pragma once

#include <optional>

#include "jet/catalog/ColumnType.h"
#include "jet/catalog/Value.h"
#include "jet/sql/values/TextComparer.h"

namespace tavrel::jet::sql {

enum class Truth : std::int8_t { False, True, Unknown };

inline Truth ToTruth(bool truth) {
    return truth ? Truth::True : Truth::False;
}
inline Truth Not(Truth truth) {
    return truth == Truth::Unknown ? truth : ToTruth(truth == Truth::False);
}

/// The type of an expression as far as it is known before rows are read; nothing for NULL and what may be
/// anything.
using StaticType = std::optional<ColumnType>;

/// Types that compare with each other.
enum class Family : std::uint8_t { Any, Number, Text, Bytes, Guid };
Family FamilyOf(StaticType type);
/// Dates and Booleans count as numbers.
Family FamilyOf(const Value& value);

/// The type that a value has by itself: whole numbers are Long.
StaticType TypeOf(const Value& value);

/// 0 is False, every other number True; Null is unknown; texts as the numbers that they spell.  Throws 3464
/// for the rest.
Truth TruthOf(const Value& value);

inline Value ToValue(Truth truth) {
    return truth == Truth::Unknown ? Value(Null{}) : Value(truth == Truth::True);
}

/// Below 0, 0 or above 0.  REQUIRES: neither is Null.  Throws 3464 when the two belong to different families.
int CompareValues(const Value& a, const Value& b, const TextComparer& texts);

/// Puts a text into a value, keeping the buffer of the one that it held.
inline void SetText(Value& value, std::string_view text) {
    if (auto* held = std::get_if<std::string>(&value)) {
        held->assign(text);
    } else {
        value.emplace<std::string>(text);
    }
}

/// A value as text, the way & and assignments write it: numbers shortest, dates yyyy-mm-dd hh:nn:ss, True as
/// -1.  Throws 3464 for bytes.
void AppendText(const Value& value, std::string& out);
std::string ValueText(const Value& value);

/// A number, or the number that a text spells.  Throws 3464.
double NumberOf(const Value& value);
/// The same rounded half to even to a Long.  Throws 3464, 3349.
std::int32_t LongOf(const Value& value);

}  // namespace tavrel::jet::sql
