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
        return;  // The compaction opens it too, and tells what is wrong.
    }
    platform::DeleteFileIfThere(compacted);
}

void RequireReplaceable(const std::string& database) {
    try {
        platform::OpenFile(database, platform::FileAccess::Read);
    } catch (const Error&) {
        return;  // The compaction reads it too, and tells what is wrong.
    }
    try {
        platform::OpenFile(database, platform::FileAccess::ReadWrite);
    } catch (const platform::FileInUse&) {
        return;  // The compaction meets the same user, and names the file.
    }
}

namespace {

void Replace(const std::string& compacted, const std::string& database) {
    // Where the name is a link, what it leads to is replaced: the link goes on leading there.
    const std::string target = platform::FollowLinks(database);
    platform::CopyPermissions(target, compacted);
    // Opening it for writing is the question whether anybody else has it open, and whether it may be changed.
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
    } catch (...) {
        platform::DeleteFileIfThere(compacted);
        throw;
    }
    return true;
}

}  // namespace tavrel::compare
