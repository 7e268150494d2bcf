// Numbers as texts, in the conventions of the locale that the data was made under (Korean): point for
// decimals, comma between thousands, ₩ or \ for money.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "jet/catalog/Value.h"

namespace tavrel::jet::sql {

/// A text that is a number, taken apart: sign and digits.digits x 10^exponent.
struct NumberText {
    bool negative = false;
    std::string digits;  ///< without leading zeros, at least one; no point
    int exponent = 0;    ///< of ten, for the last digit
};

/// Blanks outside; a sign before or behind; digits with commas anywhere among them and one point; an exponent
/// with E or D; &H… and &O…; a currency sign; parentheses for negative.  Nothing for whatever is no number.
std::optional<NumberText> ReadNumber(std::string_view text);

/// Throws 3349 beyond the range.
double DoubleOf(const NumberText& number);
/// The value x 10^scale, rounded half to even; every digit counts.  Throws 3349 beyond 64 bits.
std::int64_t ScaledOf(const NumberText& number, unsigned scale);
/// With the decimals of the text; throws 3349 beyond 28 digits.
Decimal DecimalOf(const NumberText& number);

/// Up to 15 digits, no trailing zeros; from 1E+15 on, and below 0.0001, with an exponent.
std::string DoubleText(double number);
std::string SingleText(float number);
/// Decimals without trailing zeros.
std::string CurrencyText(const Currency& number);
std::string ShortDecimalText(const Decimal& number);

}  // namespace tavrel::jet::sql
