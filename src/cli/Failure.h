// How a command that fails ends.
#pragma once

#include <string_view>

#include "cli/Command.h"

namespace tavrel::cli {

/// A message on standard error, a line feed behind it.
void Complain(std::string_view text);

/// Runs a command; whatever it throws becomes one message, and the exit code of a failure.  When nobody reads
/// the output any more (a pipe that was closed) the message is left out.
ExitCode RunGuarded(Command& command);

}  // namespace tavrel::cli
