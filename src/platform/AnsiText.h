// Texts for files of other programs that know no Unicode.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::platform {

/// UTF-8 text in the system's code page for texts: on Windows the one that is set, elsewhere the Korean one
/// (949).  What it has no character for becomes "?".
std::string AnsiText(std::string_view utf8);

}  // namespace tavrel::platform
