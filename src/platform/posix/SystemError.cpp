#include "platform/posix/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "platform/SystemReasons.h"

namespace tavrel::platform {
namespace {

struct Meaning {
    int errorNumber;
    std::int32_t number;
    std::string_view reason;
};

// Whatever is not listed is a device fault, and the system's own words are its reason.
constexpr Meaning kMeanings[] = {
    {ENOENT, errors::kFileNotFound, reasons::kNoFile},
    {ENOTDIR, errors::kPathNotFound, reasons::kNoFolder},
    {EEXIST, errors::kFileExists, reasons::kExists},
    {ENOSPC, errors::kDiskFull, reasons::kNoSpace},
    {EDQUOT, errors::kDiskFull, reasons::kNoSpace},
    {EFBIG, errors::kDiskFull, reasons::kTooLarge},
    {EACCES, errors::kPermissionDenied, reasons::kNoPermission},
    {EPERM, errors::kPermissionDenied, reasons::kNoPermission},
    {ETXTBSY, errors::kPermissionDenied, reasons::kInUse},
    {EBUSY, errors::kPermissionDenied, reasons::kInUse},
    {EISDIR, errors::kPathAccess, reasons::kIsFolder},
    {EROFS, errors::kPathAccess, reasons::kReadOnlyDisk},
    {ENXIO, errors::kPathAccess, reasons::kNoDevice},
    {ELOOP, errors::kPathAccess, reasons::kLinksTooDeep},
    {ENAMETOOLONG, errors::kPathAccess, reasons::kNameTooLong},
    {ENOTEMPTY, errors::kPathAccess, reasons::kFolderNotEmpty},
    {EXDEV, errors::kPathAccess, reasons::kOtherDisk},
    {EINVAL, errors::kPathAccess, reasons::kBadName},
    {EMFILE, errors::kTooManyFiles, reasons::kTooManyFiles},
    {ENFILE, errors::kTooManyFiles, reasons::kTooManyFiles},
    {EIO, errors::kDeviceFault, reasons::kInputOutput},
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
    const std::string reason =
        listed ? std::string(meaning->reason) : std::system_category().message(errorNumber);
    return MakeError(listed ? meaning->number : errors::kDeviceFault, {}, path + ": " + reason);
}

Error LastSystemError(const std::string& path) {
    return SystemError(errno, path);
}

}  // namespace tavrel::platform
