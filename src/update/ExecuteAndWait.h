// Launching a program and waiting for its end.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Processes.h"

namespace tavrel::modWaitProc {

/// What the shell is asked for; `hidden` goes before `minimized`.
platform::ShellExecution ExecutionOf(const std::string& file, std::uintptr_t ownerWindow,
                                     const std::string& parameters, const std::string& workingFolder,
                                     bool hidden, bool minimized);

/// Opens the file through the shell and returns when the started process has ended, without a time limit; at
/// once when it cannot be started.  Reports nothing.
void ExecuteAndWait(const std::string& file, std::uintptr_t ownerWindow, const std::string& parameters,
                    const std::string& workingFolder, bool hidden, bool minimized);

}  // namespace tavrel::modWaitProc
