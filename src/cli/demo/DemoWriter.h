// Writes the demonstration databases.
#pragma once

#include <string>

namespace tavrel::cli {

/// Makes database A (`a`) or B at a path that does not exist yet.  Throws Error.
void WriteDemoDatabase(const std::string& path, bool a);

/// True when a file is a demonstration database of ours, which may be replaced.
bool IsDemoDatabase(const std::string& path);

}  // namespace tavrel::cli
