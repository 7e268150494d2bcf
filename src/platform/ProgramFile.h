// Program files and their names.  Paths are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::platform {

/// What the name of a program ends with.
#ifdef _WIN32
inline constexpr std::string_view kExecutableSuffix = ".exe";
#else
inline constexpr std::string_view kExecutableSuffix;
#endif

/// The name of the ordinary file as the folder's listing spells it; empty when there is no such file.  Throws
/// Error when the lookup itself fails.
std::string NameInFolder(const std::string& folder, const std::string& name);

/// Lets the file be started as a program, by those who may read it; nothing to do on Windows.  Throws Error.
void MakeRunnable(const std::string& path);

}  // namespace tavrel::platform
