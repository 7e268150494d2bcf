#include "platform/win32/SystemError.h"

#include <algorithm>
#include <iterator>

#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

struct Meaning {
    DWORD code;
    std::int32_t number;
};

// Whatever is not listed is a device fault.
constexpr Meaning kMeanings[] = {
    {ERROR_FILE_NOT_FOUND, errors::kFileNotFound},
    {ERROR_PATH_NOT_FOUND, errors::kPathNotFound},
    {ERROR_BAD_NETPATH, errors::kPathNotFound},
    {ERROR_BAD_NET_NAME, errors::kPathNotFound},
    {ERROR_INVALID_DRIVE, errors::kPathNotFound},
    {ERROR_FILE_EXISTS, errors::kFileExists},
    {ERROR_ALREADY_EXISTS, errors::kFileExists},
    {ERROR_DISK_FULL, errors::kDiskFull},
    {ERROR_HANDLE_DISK_FULL, errors::kDiskFull},
    {ERROR_FILE_TOO_LARGE, errors::kDiskFull},
    {ERROR_SHARING_VIOLATION, errors::kPermissionDenied},
    {ERROR_LOCK_VIOLATION, errors::kPermissionDenied},
    {ERROR_ACCESS_DENIED, errors::kPermissionDenied},
    {ERROR_TOO_MANY_OPEN_FILES, errors::kTooManyFiles},
    {ERROR_WRITE_PROTECT, errors::kPathAccess},
    {ERROR_DIRECTORY, errors::kPathAccess},
    {ERROR_INVALID_NAME, errors::kPathAccess},
    {ERROR_NOT_SAME_DEVICE, errors::kPathAccess},
    {ERROR_FILENAME_EXCED_RANGE, errors::kPathAccess},
};

}  // namespace

std::wstring Wide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(utf8.size(), L'\0');  // never more units than bytes
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::string Narrow(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    std::string utf8(wide.size() * 3, '\0');
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(),
                                             static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

std::wstring WidePath(const std::string& path) {
    // A folder must leave room for a short name in it.
    constexpr std::size_t kLongest = MAX_PATH - 13;
    std::wstring wide = Wide(path);
    if (wide.size() < kLongest || wide.starts_with(L"\\\\?\\")) {
        return wide;
    }
    std::wstring full(::GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(::GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.empty()) {
        return wide;
    }
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

Error SystemError(std::uint32_t code, const std::string& path) {
    const auto* meaning = std::ranges::find(kMeanings, code, &Meaning::code);
    const bool listed = meaning != std::ranges::end(kMeanings);
    return MakeError(listed ? meaning->number : errors::kDeviceFault, {},
                     path + ": Windows " + std::to_string(code));
}

Error LastSystemError(const std::string& path) {
    return SystemError(::GetLastError(), path);
}

}  // namespace tavrel::platform
