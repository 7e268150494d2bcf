#include "compare/CopyDatabase.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "jet/storage/Journal.h"
#include "platform/File.h"
#include "platform/FileSystem.h"
#include "platform/SameFile.h"

namespace tavrel::compare {

namespace {

std::filesystem::path PathOf(const std::string& utf8) {
    return {std::u8string(utf8.begin(), utf8.end())};
}

void CopyContent(platform::File& from, platform::File& to) {
    constexpr std::uint64_t kPiece = 1U << 20U;
    const std::uint64_t size = from.Size();
    std::vector<std::uint8_t> piece(static_cast<std::size_t>(std::min(size, kPiece)));
    for (std::uint64_t at = 0; at < size; at += piece.size()) {
        piece.resize(static_cast<std::size_t>(std::min(size - at, kPiece)));
        from.ReadAt(at, piece);
        to.WriteAt(at, piece);
    }
}

/// A file that is still empty gets the permissions of what will be copied into it; its owner may change it.
void GrantAsFor(const std::string& from, const std::string& to) {
    using std::filesystem::perms;
    try {
        platform::CopyPermissions(from, to);
        std::filesystem::permissions(PathOf(to), perms::owner_read | perms::owner_write,
                                     std::filesystem::perm_options::add);
    } catch (const Error& error) {
        if (error.Number() != errors::kPermissionDenied) {
            throw;
        }
        // We have just made the file, so this is a file system that keeps no permissions: nothing can be
        // granted.
    }
}

/// `source`, which is at `from`, copied to a file made anew; an old one, or a link that stands there, is
/// removed and not written through.
void CopyOver(platform::File& source, const std::string& from, const std::string& to) {
    platform::DeleteFileIfThere(to);
    const auto copy = platform::OpenFile(to, platform::FileAccess::CreateNew);
    GrantAsFor(from, to);
    CopyContent(source, *copy);
}

}  // namespace

void CopyDatabase(const std::string& from, const std::string& to) {
    if (platform::IsSameFile(from, to)) {
        throw MakeError(errors::kFileExists, {}, to);
    }
    const auto database = platform::OpenFile(from, platform::FileAccess::Read);
    // A journal that an earlier copy has left must not be taken for one of this copy.
    platform::DeleteFileIfThere(jet::JournalPath(to));
    CopyOver(*database, from, to);
    const std::string journal = jet::JournalPath(platform::FollowLinks(from));
    if (platform::FileExists(journal)) {
        const auto pages = platform::OpenFile(journal, platform::FileAccess::Read);
        CopyOver(*pages, from, jet::JournalPath(to));
    }
}

}  // namespace tavrel::compare
