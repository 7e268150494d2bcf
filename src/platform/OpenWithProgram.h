// Opening a file the way a double click does.
#pragma once

#include <string>

namespace tavrel::platform {

/// Asks the system to open the file with the program that is associated with it, in a normal window.  Does
/// not wait; nothing is reported when the file cannot be opened.
void OpenWithAssociatedProgram(const std::string& path);

}  // namespace tavrel::platform
