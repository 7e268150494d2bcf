// The command line's own texts, in Korean: help, and what is wrong with the arguments.
#pragma once

#include "cli/Command.h"

namespace tavrel::cli {

/// Help in Korean for the program and the commands that are added to it afterwards.
void SpeakKorean(CLI::App& app);

/// The headings under which a command and its own help option are listed.
void PutIntoGroups(CLI::App& command);

/// Ends after a parse that did not lead to a command: help and version go to standard output (Done), anything
/// else is explained on standard error (Failed).
ExitCode EndParsing(const CLI::App& app, const CLI::ParseError& error);

}  // namespace tavrel::cli
