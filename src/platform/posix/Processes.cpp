#include "platform/Processes.h"

#include <array>
#include <cerrno>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/SystemError.h"

namespace tavrel::platform {
namespace {

constexpr std::int32_t kNoProgram = 5;

/// What is said about a process before it starts.
class SpawnSettings {
  public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }

    void StartIn(const std::string& folder) {
        posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str());
    }
    /// A session of its own: the end of this program's terminal is not the end of the other program.
    void Detach() { posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID); }

    /// Throws when the program cannot be started.
    [[nodiscard]] pid_t Spawn(const std::string& program, const std::string& argument) const {
        std::string name = program;
        std::string parameter = argument;
        const std::array<char*, 3> words = {name.data(), parameter.empty() ? nullptr : parameter.data(),
                                            nullptr};
        pid_t process = 0;
        // A name without a folder is looked for where the shell looks.
        const int failure =
            posix_spawnp(&process, program.c_str(), &actions_, &attributes_, words.data(), environ);
        if (failure == ENOEXEC) {
            throw MakeError(kNoProgram, {}, program + ": 실행 파일이 아님");
        }
        if (failure != 0) {
            throw SystemError(failure, program);
        }
        return process;
    }

  private:
    posix_spawn_file_actions_t actions_ = {};
    posix_spawnattr_t attributes_ = {};
};

}  // namespace

void ShellExecuteAndWait(const ShellExecution& execution) {
    SpawnSettings settings;
    if (!execution.directory.empty()) {
        settings.StartIn(execution.directory);
    }
    pid_t process = 0;
    try {
        process = settings.Spawn(execution.file, execution.parameters);
    } catch (const Error&) {
        return;
    }
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void StartProgram(const std::string& program, const std::string& argument, ShowCommand /*show*/) {
    SpawnSettings settings;
    settings.Detach();
    static_cast<void>(settings.Spawn(program, argument));
}

void ShowFolder(const std::string& folder) {
    StartProgram("xdg-open", folder, ShowCommand::NormalWithFocus);
}

}  // namespace tavrel::platform
