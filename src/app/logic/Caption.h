// The window's caption.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::app {

/// "Tavrel v1.7.30 (Made by Ardel)" for the file version "1.7.0.30": its first, second and fourth numbers,
/// without leading zeros.  A number that is missing counts as 0.
std::string WindowCaption(std::string_view fileVersion);

}  // namespace tavrel::app
