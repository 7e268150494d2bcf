#include "platform/ProgramFile.h"

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {

std::string NameInFolder(const std::string& folder, const std::string& name) {
    constexpr DWORD kNotOrdinary = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const std::string path = folder + "\\" + name;
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileW(WidePath(path).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD code = ::GetLastError();
        if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND) {
            return {};
        }
        throw SystemError(code, path);
    }
    ::FindClose(search);
    return (found.dwFileAttributes & kNotOrdinary) == 0 ? Narrow(found.cFileName) : std::string();
}

void MakeRunnable(const std::string& /*path*/) {}

}  // namespace tavrel::platform
