// What the program is connected to.
#pragma once

#include <string>
#include <vector>

namespace tavrel::platform {

enum class Stream { Output, Error };

/// True when a person looks at the stream.
bool IsTerminal(Stream stream);
/// Columns of the terminal; 80 when there is none.
int TerminalWidth();
/// The command line as UTF-8, program name first, and the console set to take UTF-8 and colours until the
/// program ends.
std::vector<std::string> CommandLine(int argc, char** argv);

}  // namespace tavrel::platform
