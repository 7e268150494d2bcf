// errno as the numbers that this room promises.
#pragma once

#include <string>

#include "text/Error.h"

namespace tavrel::platform {

/// The error for `errorNumber` (an errno value) met at `path`; the reason is in Korean for the common ones,
/// for others in the operating system's own words.
Error SystemError(int errorNumber, const std::string& path);

/// The same with errno as it is now.
Error LastSystemError(const std::string& path);

}  // namespace tavrel::platform
