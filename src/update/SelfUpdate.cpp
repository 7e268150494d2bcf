#include "update/SelfUpdate.h"

#include <cmath>

#include "platform/FileSystem.h"
#include "platform/Http.h"
#include "platform/ProgramFile.h"
#include "text/LeadingNumber.h"
#include "update/Download.h"
#include "update/FileVersion.h"
#include "update/ResumeAfterError.h"

namespace tavrel::modAutoUpdateV1_Launcher {

namespace {

constexpr const char* kUpdatePath = "/download/자동업데이트_v1/";
constexpr const char* kVersionFileEnd = "_lastver.txt";
constexpr const char* kNoVersion = "의 최신버전 정보를 읽어올 수 없습니다!";

std::string BaseUrl(const update::RunningProgram& program) {
    return "http://" + program.updateHost + kUpdatePath;
}

std::string VersionFileOf(const std::string& name) {
    return name.substr(0, name.find_last_of('.')) + kVersionFileEnd;
}

/// What stands behind the last "."; all of it when there is none.
std::string LastComponent(const std::string& version) {
    return version.substr(version.find_last_of('.') + 1);
}

bool IsBlank(const std::string& text) {
    return text.find_first_not_of(' ') == std::string::npos;
}

bool FetchCompanion(const update::RunningProgram& program, const std::string& name) {
    const std::string path = program.PathOf(name);
    if (!DownloadFile(BaseUrl(program) + name, path)) {
        return false;
    }
    platform::MakeRunnable(path);
    return true;
}

}  // namespace

bool AutoUpdaterSelfUpdate(const update::RunningProgram& program, platform::MessageBox& messages) {
    const update::ResumeAfterError resume(messages, "AutoUpdaterSelfUpdate",
                                          "Module modAutoUpdateV1_Launcher");
    for (const char* name : {kUpdateChecker, kFileReplacer}) {
        platform::RemoveBrokenDownload(program.PathOf(name));
    }
    const std::string local = program.PathOf(kUpdateChecker);
    std::string localRevision = "0";
    if (resume.Ask([&] { return platform::FileExists(local); })) {
        resume.Run([&] { localRevision = LastComponent(modFile::GetFileVer(local, true, true, messages)); });
    }
    const std::string published = OpenUrl(BaseUrl(program) + VersionFileOf(kUpdateChecker));
    if (IsBlank(published)) {
        messages.Show(
            {.text = kUpdateChecker + std::string(kNoVersion), .icon = platform::MessageIcon::Critical});
        return false;
    }
    const bool newer = resume.Ask(
        [&] { return text::LeadingNumber(localRevision) < std::nearbyint(text::LeadingNumber(published)); });
    for (const char* name : {kUpdateChecker, kFileReplacer}) {
        bool fetched = true;
        if (newer) {
            resume.Run([&] { fetched = FetchCompanion(program, name); });
        }
        if (!fetched) {
            return false;
        }
    }
    return true;
}

}  // namespace tavrel::modAutoUpdateV1_Launcher
