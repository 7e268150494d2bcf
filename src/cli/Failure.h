// How a command that fails ends.
#pragma once

#include <functional>
#include <string_view>

#include "cli/Command.h"

namespace tavrel::cli {

/// A message on standard error, a line feed behind it.
void Complain(std::string_view text);

/// The message for a lack of memory, which takes none.
void SayThatMemoryRanOut() noexcept;

/// Does the work and sees its output off; whatever is thrown becomes one message, and the exit code of a
/// failure.  When nobody reads the output any more (a pipe that was closed) the message is left out.
ExitCode RunGuarded(const std::function<ExitCode()>& work);

}  // namespace tavrel::cli
