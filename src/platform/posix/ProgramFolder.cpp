#include "platform/ProgramFolder.h"

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include "platform/posix/SystemError.h"

namespace tavrel::platform {
namespace {

/// $XDG_STATE_HOME, or ~/.local/state where that is not set or not absolute, and the program's name.
std::string StateFolder() {
    const char* state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && state[0] == '/') {
        return std::string(state) + "/tavrel";
    }
    const char* home = std::getenv("HOME");
    return std::string(home == nullptr ? "" : home) + "/.local/state/tavrel";
}

}  // namespace

std::string ProgramPath() {
    constexpr const char* kSelf = "/proc/self/exe";
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink(kSelf, failure);
    if (failure) {
        throw SystemError(failure.value(), kSelf);
    }
    return program.string();
}

std::string ProgramFolder() {
    return std::filesystem::path(ProgramPath()).parent_path().string();
}

std::string WritableProgramFolder() {
    std::string folder = ProgramFolder();
    if (::access(folder.c_str(), W_OK | X_OK) == 0) {
        return folder;
    }
    folder = StateFolder();
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure) {
        throw SystemError(failure.value(), folder);
    }
    return folder;
}

}  // namespace tavrel::platform
