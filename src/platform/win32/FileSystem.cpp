#include "platform/FileSystem.h"

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

/// The name's attributes; INVALID_FILE_ATTRIBUTES when there is no such name.
DWORD LookUp(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesW(Wide(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD code = ::GetLastError();
        if (code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND) {
            throw SystemError(code, path);
        }
    }
    return attributes;
}

}  // namespace

bool FileExists(const std::string& path) {
    constexpr DWORD kNotOrdinary = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const DWORD attributes = LookUp(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & kNotOrdinary) == 0;
}

bool FolderExists(const std::string& path) {
    const DWORD attributes = LookUp(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::uint64_t FileSize(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (!::GetFileAttributesExW(Wide(path).c_str(), GetFileExInfoStandard, &data)) {
        throw LastSystemError(path);
    }
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        throw SystemError(ERROR_DIRECTORY, path);
    }
    return std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
}

void DeleteFileIfThere(const std::string& path) {
    if (::DeleteFileW(Wide(path).c_str())) {
        return;
    }
    const DWORD code = ::GetLastError();
    if (code != ERROR_FILE_NOT_FOUND) {
        throw SystemError(code == ERROR_ACCESS_DENIED && FolderExists(path) ? ERROR_DIRECTORY : code, path);
    }
}

void MakeFolder(const std::string& path) {
    if (::CreateDirectoryW(Wide(path).c_str(), nullptr)) {
        return;
    }
    const DWORD code = ::GetLastError();
    if (code != ERROR_ALREADY_EXISTS || !FolderExists(path)) {
        throw SystemError(code, path);
    }
}

void ReplaceFile(const std::string& from, const std::string& to) {
    constexpr DWORD kHow = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (!::MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), kHow)) {
        const DWORD code = ::GetLastError();
        throw SystemError(code, FileExists(from) ? to : from);
    }
}

void CopyPermissions(const std::string& /*from*/, const std::string& /*to*/) {}

std::string FollowLinks(const std::string& path) {
    return path;
}

std::string FullPath(const std::string& path) {
    const std::wstring wide = Wide(path);
    std::wstring full(::GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    const DWORD length =
        ::GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0 || length >= full.size()) {
        throw LastSystemError(path);
    }
    full.resize(length);
    return Narrow(full);
}

}  // namespace tavrel::platform
