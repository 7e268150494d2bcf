#include "compare/CompactSwap.h"

#include "platform/File.h"
#include "platform/FileSystem.h"

namespace tavrel::compare {

namespace {

constexpr std::string_view kExtension = ".mdb";
constexpr std::string_view kTemporary = "_compactTemp.mdb";

}  // namespace

std::string CompactTempName(const std::string& path) {
    std::string name;
    std::size_t from = 0;
    for (std::size_t at = path.find(kExtension); at != std::string::npos; at = path.find(kExtension, from)) {
        name.append(path, from, at - from).append(kTemporary);
        from = at + kExtension.size();
    }
    return name.append(path, from);
}

void DeleteLeftover(const std::string& compacted, const std::string& database) {
    if (!platform::FileExists(compacted)) {
        return;
    }
    try {
        platform::OpenFile(database, platform::FileAccess::Read);
    } catch (const Error&) {
        return;  // as the compaction will say
    }
    platform::DeleteFileIfThere(compacted);
}

void RequireReplaceable(const std::string& database) {
    try {
        platform::OpenFile(database, platform::FileAccess::Read);
    } catch (const Error&) {
        return;  // as the compaction will say
    }
    try {
        platform::OpenFile(database, platform::FileAccess::ReadWrite);
    } catch (const platform::FileInUse&) {
        return;  // as the compaction will say
    }
}

namespace {

void Replace(const std::string& compacted, const std::string& database) {
    // A link keeps leading to the database that it leads to.
    const std::string target = platform::FollowLinks(database);
    platform::CopyPermissions(target, compacted);
    // Nobody else has the file open, and it may be written.
    platform::OpenFile(database, platform::FileAccess::ReadWrite);
    platform::ReplaceFile(compacted, target);
}

}  // namespace

bool ReplaceByCompacted(const std::string& compacted, const std::string& database) {
    if (!platform::FileExists(compacted) || platform::FileSize(compacted) == 0) {
        return false;
    }
    try {
        Replace(compacted, database);
    } catch (const Error&) {
        platform::DeleteFileIfThere(compacted);
        throw;
    }
    return true;
}

}  // namespace tavrel::compare
