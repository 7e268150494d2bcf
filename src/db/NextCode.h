// Codes: texts of digits, all of one length.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::db {

/// The code behind one: its leading number plus 1, rounded to a whole number, with zeros in front up to
/// `width` digits; more digits than that are kept.  Codes of digits alone are counted exactly, however long.
/// Throws Error 6 when the number is too large for a double.
std::string CodeBehind(std::string_view code, int width);

}  // namespace tavrel::db
