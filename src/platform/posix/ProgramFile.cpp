#include "platform/ProgramFile.h"

#include <sys/stat.h>

#include "platform/FileSystem.h"
#include "platform/posix/SystemError.h"

namespace tavrel::platform {

std::string NameInFolder(const std::string& folder, const std::string& name) {
    // Letter case counts here, so the listing has that very spelling or no such file.
    return FileExists(folder + kPathSeparator + name) ? name : std::string();
}

void MakeRunnable(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        throw LastSystemError(path);
    }
    const mode_t readers = status.st_mode & (S_IRUSR | S_IRGRP | S_IROTH);
    if (::chmod(path.c_str(), (status.st_mode & 07777U) | readers >> 2U) != 0) {
        throw LastSystemError(path);
    }
}

}  // namespace tavrel::platform
