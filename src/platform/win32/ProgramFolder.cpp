#include "platform/ProgramFolder.h"

#include <cstdlib>

#include "platform/FileSystem.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

/// A file can be made in the folder: tried, for rights alone do not tell.
bool CanBeWritten(const std::string& folder) {
    const std::wstring probe = Wide(folder + "\\tavrel-" + std::to_string(::GetCurrentProcessId()) + ".tmp");
    const HANDLE file = ::CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    ::CloseHandle(file);
    return true;
}

}  // namespace

std::string ProgramPath() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size()) {
        path.resize(path.size() * 2);
        length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    }
    if (length == 0) {
        throw LastSystemError({});
    }
    path.resize(length);
    return Narrow(path);
}

std::string ProgramFolder() {
    const std::string path = ProgramPath();
    return path.substr(0, path.find_last_of('\\'));
}

std::string WritableProgramFolder() {
    std::string folder = ProgramFolder();
    if (CanBeWritten(folder)) {
        return folder;
    }
    const wchar_t* local = ::_wgetenv(L"LOCALAPPDATA");
    folder = Narrow(local == nullptr ? L"." : local) + "\\Tavrel";
    MakeFolder(folder);
    return folder;
}

}  // namespace tavrel::platform
