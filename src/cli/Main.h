// The program behind its command line.
#pragma once

#include <string>
#include <vector>

namespace tavrel::cli {

/// `arguments`: program name first, UTF-8.  Returns the exit code; throws nothing.
int RunProgram(std::vector<std::string> arguments) noexcept;

}  // namespace tavrel::cli
