#include "platform/TemporaryFile.h"

#include "platform/win32/Windows.h"
#include "text/Error.h"

namespace tavrel::platform {

/// The run-time's own call makes such files in the drive's root, where most users have no rights.
TemporaryFile OpenTemporaryFile() {
    wchar_t folder[MAX_PATH + 1] = {};
    wchar_t path[MAX_PATH + 1] = {};
    const DWORD length = ::GetTempPathW(MAX_PATH + 1, folder);
    if (length == 0 || length > MAX_PATH || ::GetTempFileNameW(folder, L"tav", 0, path) == 0) {
        throw MakeError(errors::kDiskFull);
    }
    // T, D: kept in memory as far as may be, and deleted when it is closed.
    TemporaryFile file(::_wfopen(path, L"w+bTD"));
    if (!file) {
        ::DeleteFileW(path);
        throw MakeError(errors::kDiskFull);
    }
    return file;
}

}  // namespace tavrel::platform
