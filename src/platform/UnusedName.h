// Where a file is made before it gets its name.
#pragma once

#include <string>

namespace tavrel::platform {

/// A name in the same folder that nothing has yet: the path with ".new" and a number behind it.  Throws
/// Error 58 when there is none.
std::string UnusedNameBeside(const std::string& path);

}  // namespace tavrel::platform
