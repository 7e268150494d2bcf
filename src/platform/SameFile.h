// Two names, one file.
#pragma once

#include <string>

namespace tavrel::platform {

/// True when both paths (UTF-8) lead to one existing file or folder.
bool IsSameFile(const std::string& a, const std::string& b);

}  // namespace tavrel::platform
