// Numbers at the beginning of texts.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::db {

/// The number with which a text begins: leading blanks are skipped, the longest decimal number is taken
/// (sign, digits with one point, exponent with E or D), what follows is ignored; 0 when there is none. Throws
/// Error 6 when it is too large for a double.
double LeadingNumber(std::string_view text);

/// The code behind one: its leading number plus 1, rounded to a whole number, with zeros in front up to
/// `width` digits; more digits than that are kept.  Codes of digits alone are counted exactly, however long.
/// Throws Error 6 like LeadingNumber.
std::string CodeBehind(std::string_view code, int width);

}  // namespace tavrel::db
