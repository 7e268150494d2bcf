// Numbers of one type as numbers of another, as the engine assigns them: rounding half to even, never
// wrapping. True is -1.  All throw 3464 for a value that is no number (texts are not read as numbers here),
// 3349 for one that does not fit.
#pragma once

#include "jet/catalog/Value.h"

namespace tavrel::jet {

inline constexpr std::int32_t kNumberOutOfRange = 3349;

/// Decimals and Currencies exactly, whatever a Double could hold of them.
std::int64_t ToInteger(const Value& value);
double ToDouble(const Value& value);
float ToSingle(const Value& value);
/// The value x 10,000; Decimals exactly.  The Doubles next to the largest and the smallest Currency are
/// these.
std::int64_t ToCurrency(const Value& value);
/// With exactly `scale` decimals; at most `precision` digits.
Decimal ToDecimal(const Value& value, unsigned precision, unsigned scale);

}  // namespace tavrel::jet
