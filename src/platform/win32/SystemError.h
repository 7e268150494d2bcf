// Windows' error codes and texts as the rest of the program knows them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/Error.h"

namespace tavrel::platform {

std::wstring Wide(std::string_view utf8);
std::string Narrow(std::wstring_view wide);

/// A path for the system's calls: one that is too long for them as it stands goes in the form without that bound,
/// from the root.
std::wstring WidePath(const std::string& path);

/// The error for `code` (as GetLastError gives it) met at `path`.
Error SystemError(std::uint32_t code, const std::string& path);

/// The same with GetLastError() as it is now.
Error LastSystemError(const std::string& path);

}  // namespace tavrel::platform
