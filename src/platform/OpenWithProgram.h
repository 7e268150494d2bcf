// Opening a file the way a double click does.
#pragma once

#include <string>

namespace tavrel::platform {

/// Asks the system to open the file with the program that is associated with it, in a normal window.  Does
/// not wait.  False when it is known at once that nothing opens the file; true does not say that it opened.
bool OpenWithAssociatedProgram(const std::string& path);

}  // namespace tavrel::platform
