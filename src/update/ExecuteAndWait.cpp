#include "update/ExecuteAndWait.h"

namespace tavrel::modWaitProc {

platform::ShellExecution ExecutionOf(const std::string& file, std::uintptr_t ownerWindow,
                                     const std::string& parameters, const std::string& workingFolder,
                                     bool hidden, bool minimized) {
    using platform::ShowCommand;
    return {.ownerWindow = ownerWindow,
            .verb = "open",
            .file = file,
            .parameters = parameters,
            .directory = workingFolder,
            .show = hidden      ? ShowCommand::Hidden
                    : minimized ? ShowCommand::MinimizedNotActivated
                                : ShowCommand::Normal};
}

void ExecuteAndWait(const std::string& file, std::uintptr_t ownerWindow, const std::string& parameters,
                    const std::string& workingFolder, bool hidden, bool minimized) {
    platform::ShellExecuteAndWait(
        ExecutionOf(file, ownerWindow, parameters, workingFolder, hidden, minimized));
}

}  // namespace tavrel::modWaitProc
