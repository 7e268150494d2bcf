// What the program is connected to.
#pragma once

#include <optional>
#include <string>
#include <string_view>
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
/// From here on standard input and output pass bytes as they are: Windows would otherwise change the ends of
/// lines and take 1A for the end of the input.
void PassBytesUnchanged();
/// A text of the console's own code page as UTF-8; nothing when it is none, or where consoles have no code
/// page of their own.
std::optional<std::string> Utf8FromConsole(std::string_view bytes);

}  // namespace tavrel::platform
