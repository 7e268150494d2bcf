// Numbers at the beginning of texts.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::text {

/// A decimal digit, whatever the locale.
inline bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The number with which a text begins: leading blanks are skipped, the longest decimal number is taken
/// (sign, digits with one point, exponent with E or D), what follows is ignored; 0 when there is none. Throws
/// Error 6 when it is too large for a double.
double LeadingNumber(std::string_view text);

/// The digits of an unsigned number at the very beginning, as std::from_chars reads them; empty when there is
/// none.
std::string LeadingDigits(std::string_view text);

}  // namespace tavrel::text
