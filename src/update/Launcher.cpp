#include "update/Launcher.h"

#include "platform/FileSystem.h"
#include "platform/Processes.h"
#include "platform/ProgramFile.h"
#include "update/ExecuteAndWait.h"
#include "update/ResumeAfterError.h"
#include "update/SelfUpdate.h"

namespace tavrel::modAutoUpdateV1_Launcher {

namespace {

constexpr const char* kNewPrefix = "New_";
constexpr const char* kNoReplacer = "파일교체 프로그램을 찾을 수 없습니다.\r\n\r\n";

}  // namespace

void RunAutoUpdate(bool skipSelfUpdate, const update::RunningProgram& program, platform::MessageBox& messages,
                   const std::function<void()>& endProgram) {
    if (program.updateHost.empty() || (!skipSelfUpdate && !AutoUpdaterSelfUpdate(program, messages))) {
        return;
    }
    const update::ResumeAfterError resume(messages, "RunAutoUpdate", "Module modAutoUpdateV1_Launcher");
    std::string executable;
    resume.Run([&] {
        executable = platform::NameInFolder(program.folder,
                                            program.baseName + std::string(platform::kExecutableSuffix));
    });
    if (executable.empty()) {
        return;
    }
    resume.Run([&] {
        modWaitProc::ExecuteAndWait(program.PathOf(kUpdateChecker), 0, program.revision + ";" + executable,
                                    program.folder, false, false);
    });
    const std::string newVersion = kNewPrefix + executable;
    if (resume.Ask([&] { return !platform::FileExists(program.PathOf(newVersion)); })) {
        return;
    }
    const std::string replacer = program.PathOf(kFileReplacer);
    if (resume.Ask([&] { return !platform::FileExists(replacer); })) {
        messages.Say(kNoReplacer + replacer);
        resume.Run([&] { platform::ShowFolder(program.folder); });
    } else {
        resume.Run([&] {
            platform::StartProgram(replacer, executable + ";" + newVersion,
                                   platform::ShowCommand::MinimizedWithFocus);
        });
    }
    endProgram();
}

}  // namespace tavrel::modAutoUpdateV1_Launcher
