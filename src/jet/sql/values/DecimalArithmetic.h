// Decimal and Currency arithmetic without rounding through binary fractions.  All throw 3349 beyond 28
// digits.
#pragma once

#include "jet/catalog/Value.h"

namespace tavrel::jet::sql {

inline constexpr unsigned kDecimalDigits = 28;

Decimal AddDecimals(const Decimal& a, const Decimal& b);
Decimal MultiplyDecimals(const Decimal& a, const Decimal& b);
/// Rounded half to even to four decimals.
Currency CurrencyOf(const Decimal& decimal);
Decimal DecimalOf(const Currency& currency);

}  // namespace tavrel::jet::sql
