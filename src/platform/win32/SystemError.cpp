#include "platform/win32/SystemError.h"

#include <algorithm>
#include <iterator>

#include "platform/SystemReasons.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

struct Meaning {
    DWORD code;
    std::int32_t number;
    std::string_view reason;
};

// Whatever is not listed is a device fault, and Windows' number is its reason.
constexpr Meaning kMeanings[] = {
    {ERROR_FILE_NOT_FOUND, errors::kFileNotFound, reasons::kNoFile},
    {ERROR_PATH_NOT_FOUND, errors::kPathNotFound, reasons::kNoFolder},
    {ERROR_BAD_NETPATH, errors::kPathNotFound, reasons::kNoFolder},
    {ERROR_BAD_NET_NAME, errors::kPathNotFound, reasons::kNoFolder},
    {ERROR_INVALID_DRIVE, errors::kPathNotFound, reasons::kNoFolder},
    {ERROR_FILE_EXISTS, errors::kFileExists, reasons::kExists},
    {ERROR_ALREADY_EXISTS, errors::kFileExists, reasons::kExists},
    {ERROR_DISK_FULL, errors::kDiskFull, reasons::kNoSpace},
    {ERROR_HANDLE_DISK_FULL, errors::kDiskFull, reasons::kNoSpace},
    {ERROR_FILE_TOO_LARGE, errors::kDiskFull, reasons::kTooLarge},
    {ERROR_SHARING_VIOLATION, errors::kPermissionDenied, reasons::kInUse},
    {ERROR_LOCK_VIOLATION, errors::kPermissionDenied, reasons::kInUse},
    {ERROR_ACCESS_DENIED, errors::kPermissionDenied, reasons::kNoPermission},
    {ERROR_TOO_MANY_OPEN_FILES, errors::kTooManyFiles, reasons::kTooManyFiles},
    {ERROR_WRITE_PROTECT, errors::kPathAccess, reasons::kReadOnlyDisk},
    {ERROR_DIRECTORY, errors::kPathAccess, reasons::kIsFolder},
    {ERROR_INVALID_NAME, errors::kPathAccess, reasons::kBadName},
    {ERROR_NOT_SAME_DEVICE, errors::kPathAccess, reasons::kOtherDisk},
    {ERROR_FILENAME_EXCED_RANGE, errors::kPathAccess, reasons::kNameTooLong},
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
    const std::string reason = listed ? std::string(meaning->reason) : "Windows " + std::to_string(code);
    return MakeError(listed ? meaning->number : errors::kDeviceFault, {}, path + ": " + reason);
}

Error LastSystemError(const std::string& path) {
    return SystemError(::GetLastError(), path);
}

}  // namespace tavrel::platform
