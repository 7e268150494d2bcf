#include "platform/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/Descriptor.h"
#include "platform/posix/SystemError.h"

namespace tavrel::platform {
namespace {

/// What the path leads to; nothing when there is no such name.
std::optional<struct stat> LookUp(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        return status;
    }
    if (errno == ENOENT || errno == ENOTDIR) {
        return std::nullopt;
    }
    throw LastSystemError(path);
}

constexpr mode_t kPermissions = 0777;
constexpr mode_t kReading = S_IRUSR | S_IRGRP | S_IROTH;
constexpr unsigned kSearchShift = 2;  ///< from "may read" to "may search", of the same class
constexpr mode_t kOfGroup = S_IRWXG;
constexpr mode_t kOfOthers = S_IRWXO;
constexpr unsigned kGroupShift = 3;  ///< from others to the group
constexpr uid_t kSameOwner = static_cast<uid_t>(-1);

struct stat StatusOf(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        throw LastSystemError(path);
    }
    return status;
}

/// False, with errno set, when it cannot be done.
bool MoveToNewName(const char* from, const char* to) {
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // A file system of the network may know links only.
    return ::link(from, to) == 0 && (::unlink(from) == 0 || (::unlink(to), false));
}

}  // namespace

bool FileExists(const std::string& path) {
    const auto status = LookUp(path);
    return status && S_ISREG(status->st_mode);
}

bool FolderExists(const std::string& path) {
    const auto status = LookUp(path);
    return status && S_ISDIR(status->st_mode);
}

bool IsDevice(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

std::uint64_t FileSize(const std::string& path) {
    const struct stat status = StatusOf(path);
    if (!S_ISREG(status.st_mode)) {
        throw MakeError(errors::kPathAccess, {}, path + ": 일반 파일이 아님");
    }
    return static_cast<std::uint64_t>(status.st_size);
}

void DeleteFileIfThere(const std::string& path) {
    if (::unlink(path.c_str()) == 0 || errno == ENOENT) {
        return;
    }
    const int reason = errno;
    // A folder is refused with EISDIR here and with EPERM there.
    throw SystemError(reason == EPERM && FolderExists(path) ? EISDIR : reason, path);
}

void MakeFolder(const std::string& path) {
    if (::mkdir(path.c_str(), 0777) == 0) {
        return;
    }
    const int reason = errno;
    if (reason == EEXIST && FolderExists(path)) {
        return;
    }
    throw SystemError(reason == ENOENT ? ENOTDIR : reason, path);  // what is missing is the folder above
}

void ReplaceFile(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) {
        const int reason = errno;
        throw SystemError(reason, FileExists(from) ? to : from);
    }
    SyncFolderOf(to);
}

void SyncFolderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(FullPath(path)).parent_path().string();
    const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.IsOpen() || ::fsync(descriptor.Number()) == 0) {
        return;
    }
    const bool knowsNoSuchThing = errno == EINVAL || errno == EOPNOTSUPP || errno == ENOSYS;
    if (!knowsNoSuchThing) {
        throw LastSystemError(folder);
    }
}

void RenameNew(const std::string& from, const std::string& to) {
    if (!MoveToNewName(from.c_str(), to.c_str())) {
        throw LastSystemError(to);
    }
    try {
        SyncFolderOf(to);
    } catch (...) {
        MoveToNewName(to.c_str(), from.c_str());
        throw;
    }
}

void CopyPermissions(const std::string& from, const std::string& to) {
    const struct stat wanted = StatusOf(from);
    // Only the superuser may give a file away; for others it is theirs already, or stays theirs.
    [[maybe_unused]] const int given = ::chown(to.c_str(), wanted.st_uid, wanted.st_gid);
    if (given != 0) {
        [[maybe_unused]] const int shared = ::chown(to.c_str(), kSameOwner, wanted.st_gid);
    }
    const struct stat made = StatusOf(to);
    mode_t mode = wanted.st_mode & kPermissions;
    if (made.st_gid != wanted.st_gid) {
        // Its group is another one, to which the owner has granted no more than to anybody.
        mode &= ~kOfGroup | (mode & kOfOthers) << kGroupShift;
    }
    if ((made.st_mode & kPermissions) != mode && ::chmod(to.c_str(), mode) != 0) {
        throw LastSystemError(to);
    }
}

void NarrowFolderLike(const std::string& file, const std::string& folder) {
    const mode_t granted = StatusOf(file).st_mode & kPermissions;
    const mode_t present = StatusOf(folder).st_mode & kPermissions;
    const mode_t search = (granted & kReading) >> kSearchShift;  // who may read files may look for them
    const mode_t narrow = present & (granted | search | S_IRWXU);
    if (narrow != present && ::chmod(folder.c_str(), narrow) != 0) {
        throw LastSystemError(folder);
    }
}

std::string FollowLinks(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path target = std::filesystem::canonical(path, failure);
    return failure ? path : target.string();
}

std::string FullPath(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path absolute = std::filesystem::absolute(path, failure);
    if (failure) {
        throw SystemError(failure.value(), path);
    }
    // ".." behind a symbolic link is not the folder that stands before it in the text.
    if (std::ranges::find(absolute, std::filesystem::path("..")) == absolute.end()) {
        return absolute.lexically_normal().string();
    }
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(absolute, failure);
    return (failure ? absolute : resolved).string();
}

}  // namespace tavrel::platform
