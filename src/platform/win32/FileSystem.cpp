#include "platform/FileSystem.h"

#include <algorithm>
#include <string_view>

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"
#include "text/Case.h"

namespace tavrel::platform {
namespace {

/// The name's attributes; INVALID_FILE_ATTRIBUTES when there is no such name.
DWORD LookUp(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesW(WidePath(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD code = ::GetLastError();
        if (code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND) {
            throw SystemError(code, path);
        }
    }
    return attributes;
}

/// Who may do what with a file.
class AccessList {
  public:
    explicit AccessList(const std::string& path) {
        const DWORD code =
            ::GetNamedSecurityInfoW(WidePath(path).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION,
                                    nullptr, nullptr, &list_, nullptr, &descriptor_);
        if (code != ERROR_SUCCESS && !IsUnknownThere(code)) {
            throw SystemError(code, path);
        }
    }
    AccessList(const AccessList&) = delete;
    AccessList& operator=(const AccessList&) = delete;
    ~AccessList() { ::LocalFree(descriptor_); }

    [[nodiscard]] ACL* Get() const { return list_; }
    /// It says more than the folder hands down.  False where the file system keeps no lists.
    [[nodiscard]] bool IsTheFilesOwn() const {
        if (descriptor_ == nullptr || list_ == nullptr || IsProtected()) {
            return list_ != nullptr;
        }
        for (DWORD i = 0; i < list_->AceCount; ++i) {
            void* entry = nullptr;
            if (::GetAce(list_, i, &entry) &&
                (static_cast<ACE_HEADER*>(entry)->AceFlags & INHERITED_ACE) == 0) {
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] bool IsProtected() const {
        SECURITY_DESCRIPTOR_CONTROL control = 0;
        DWORD revision = 0;
        return ::GetSecurityDescriptorControl(descriptor_, &control, &revision) &&
               (control & SE_DACL_PROTECTED) != 0;
    }

  private:
    static bool IsUnknownThere(DWORD code) {
        return code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED ||
               code == ERROR_CALL_NOT_IMPLEMENTED;
    }

    PSECURITY_DESCRIPTOR descriptor_ = nullptr;
    ACL* list_ = nullptr;
};

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

bool IsDevice(const std::string& path) {
    constexpr std::string_view kNames[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    constexpr std::string_view kNumbered[] = {"COM", "LPT"};
    if (path.starts_with("\\\\.\\")) {
        return true;
    }
    // Such a name is a device in every folder and with every extension.
    const std::size_t folder = path.find_last_of("\\/:");
    std::string name = text::Upper(path.substr(folder == std::string::npos ? 0 : folder + 1));
    name.resize(std::min(name.find_first_of(". :"), name.size()));
    const bool numbered = name.size() == 4 && name.back() >= '1' && name.back() <= '9' &&
                          std::ranges::find(kNumbered, name.substr(0, 3)) != std::end(kNumbered);
    return numbered || std::ranges::find(kNames, name) != std::end(kNames);
}

std::uint64_t FileSize(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (!::GetFileAttributesExW(WidePath(path).c_str(), GetFileExInfoStandard, &data)) {
        throw LastSystemError(path);
    }
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        throw SystemError(ERROR_DIRECTORY, path);
    }
    return std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
}

void DeleteFileIfThere(const std::string& path) {
    if (::DeleteFileW(WidePath(path).c_str())) {
        return;
    }
    const DWORD code = ::GetLastError();
    if (code != ERROR_FILE_NOT_FOUND) {
        throw SystemError(code == ERROR_ACCESS_DENIED && FolderExists(path) ? ERROR_DIRECTORY : code, path);
    }
}

void MakeFolder(const std::string& path) {
    if (::CreateDirectoryW(WidePath(path).c_str(), nullptr)) {
        return;
    }
    const DWORD code = ::GetLastError();
    if (code != ERROR_ALREADY_EXISTS || !FolderExists(path)) {
        throw SystemError(code, path);
    }
}

void ReplaceFile(const std::string& from, const std::string& to) {
    if (FileExists(from) && FileExists(to)) {
        CopyPermissions(to, from);
    }
    constexpr DWORD kHow = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (!::MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(), kHow)) {
        const DWORD code = ::GetLastError();
        throw SystemError(code, FileExists(from) ? to : from);
    }
}

void RenameNew(const std::string& from, const std::string& to) {
    if (!::MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(), MOVEFILE_WRITE_THROUGH)) {
        throw LastSystemError(to);
    }
}

/// Names are kept in order by the file system's own log, which flushing a file brings to the disk, too; where
/// the folder may be flushed by itself, it is.
void SyncFolderOf(const std::string& path) {
    constexpr DWORD kEverybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const std::string full = FullPath(path);
    const auto folder = WidePath(full.substr(0, full.find_last_of(kPathSeparator) + 1));
    const HANDLE handle = ::CreateFileW(folder.data(), GENERIC_WRITE, kEverybody, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle != INVALID_HANDLE_VALUE) {
        ::FlushFileBuffers(handle);
        ::CloseHandle(handle);
    }
}

void CopyPermissions(const std::string& from, const std::string& to) {
    const AccessList list(from);
    if (!list.IsTheFilesOwn()) {
        return;  // `to` has the same from the folder; on a shared drive it may not even be set
    }
    // What the folder hands down, it hands down to `to` as well, unless `from` was cut off from that.
    const SECURITY_INFORMATION what =
        DACL_SECURITY_INFORMATION |
        (list.IsProtected() ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION);
    const DWORD code = ::SetNamedSecurityInfoW(WidePath(to).data(), SE_FILE_OBJECT, what, nullptr, nullptr,
                                               list.Get(), nullptr);
    if (code != ERROR_SUCCESS) {
        throw SystemError(code, to);
    }
}

void NarrowFolderLike(const std::string& /*file*/, const std::string& /*folder*/) {}

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
