// Names on disk.  Paths are UTF-8.
#pragma once

#include <cstdint>
#include <string>

namespace tavrel::platform {

inline constexpr char kPathSeparator =
#ifdef _WIN32
    '\\';
#else
    '/';
#endif

/// An ordinary file of that name exists (no folder; on Windows neither hidden nor system).  Throws Error when
/// the lookup itself fails (a drive that is gone, no permission on a folder of the path).
bool FileExists(const std::string& path);
bool FolderExists(const std::string& path);
/// The name leads to a device or a pipe: it can be written to, but nothing can take its place.  False when it
/// cannot be looked up.
bool IsDevice(const std::string& path);
std::uint64_t FileSize(const std::string& path);
void DeleteFileIfThere(const std::string& path);
/// Creates a folder; fine when it exists already.
void MakeFolder(const std::string& path);
/// Replaces `to` by `from` in one step; both must be on one volume.  On Windows the access list of a `to`
/// that is there stays, as a file carries it there that has one of its own.
void ReplaceFile(const std::string& from, const std::string& to);
/// Gives a file its name in one step, on one volume.  Throws 58 when something has that name already; then,
/// and whenever it throws, the file has its old name only.
void RenameNew(const std::string& from, const std::string& to);
/// Makes last, when the power fails, that the name was made, renamed or removed.  A folder that may not be
/// read, or a file system that keeps names in order by itself, is left alone.
void SyncFolderOf(const std::string& path);
/// Gives `to` the permissions of `from`: mode and owner, on Windows the access list.
void CopyPermissions(const std::string& from, const std::string& to);
/// Takes from a folder's permissions what those of `file` do not grant, where they carry their own; the owner
/// keeps all.
void NarrowFolderLike(const std::string& file, const std::string& folder);
/// Where the path leads when links are followed; the path itself when there is none.
std::string FollowLinks(const std::string& path);
/// The path in full, from the root.
std::string FullPath(const std::string& path);

}  // namespace tavrel::platform
