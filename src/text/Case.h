// Letter case, in one place: whatever ignores case does it by these functions.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::text {

/// Upper case, one character for one character (Unicode simple mapping), whatever the system's locale.
std::string Upper(std::string_view utf8);

/// Unicode's full lower case (U+0130 becomes two characters, a final sigma its own form): the order of
/// names in listings and dumps.
std::string Lower(std::string_view utf8);

/// Equal when letter case is ignored: the upper-case forms are the same.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// Strict weak order of names: by lower case, code point by code point; equal ones by the names themselves.
bool NameLess(std::string_view a, std::string_view b);

}  // namespace tavrel::text
