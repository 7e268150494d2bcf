#include "platform/posix/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace tavrel::platform {
namespace {

struct Meaning {
    int errorNumber;
    std::int32_t number;
};

// Whatever is not listed is a device fault.
constexpr Meaning kMeanings[] = {
    {ENOENT, errors::kFileNotFound},      {ENOTDIR, errors::kPathNotFound},
    {EEXIST, errors::kFileExists},        {ENOSPC, errors::kDiskFull},
    {EDQUOT, errors::kDiskFull},          {EFBIG, errors::kDiskFull},
    {EACCES, errors::kPermissionDenied},  {EPERM, errors::kPermissionDenied},
    {ETXTBSY, errors::kPermissionDenied}, {EBUSY, errors::kPermissionDenied},
    {EISDIR, errors::kPathAccess},        {EROFS, errors::kPathAccess},
    {ENXIO, errors::kPathAccess},         {ELOOP, errors::kPathAccess},
    {ENAMETOOLONG, errors::kPathAccess},  {ENOTEMPTY, errors::kPathAccess},
    {EXDEV, errors::kPathAccess},         {EINVAL, errors::kPathAccess},
    {EMFILE, errors::kTooManyFiles},      {ENFILE, errors::kTooManyFiles},
};

/// ENOENT does not tell whether the name is missing or a folder above it.
bool IsFolderMissing(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return !folder.empty() && ::access(folder.c_str(), F_OK) != 0;
}

}  // namespace

Error SystemError(int errorNumber, const std::string& path) {
    if (errorNumber == ENOENT && IsFolderMissing(path)) {
        errorNumber = ENOTDIR;
    }
    const auto* meaning = std::ranges::find(kMeanings, errorNumber, &Meaning::errorNumber);
    const bool listed = meaning != std::ranges::end(kMeanings);
    return MakeError(listed ? meaning->number : errors::kDeviceFault, {},
                     path + ": " + std::system_category().message(errorNumber));
}

Error LastSystemError(const std::string& path) {
    return SystemError(errno, path);
}

}  // namespace tavrel::platform
