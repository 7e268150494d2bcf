#include "survey/PatchedCopy.h"

#include <filesystem>
#include <mutex>
#include <random>

#include "compare/CopyDatabase.h"
#include "db/Session.h"
#include "platform/FileSystem.h"
#include "survey/KeptReason.h"
#include "text/Error.h"

namespace tavrel::survey {

namespace {

std::string FolderText(const std::filesystem::path& path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

/// There is one session, and the patches work on it.
std::mutex& SessionInUse() {
    static std::mutex session;
    return session;
}

void Patch(const compare::Product& product, const std::string& file, const std::string& password) {
    const std::lock_guard<std::mutex> lock(SessionInUse());
    KeptReason messages;
    const modDBsub::MessagesScope scope(messages);
    bool patched = false;
    try {
        patched = modDBsub::DBOpenADO(file, password) && product.ChkDBpatch();
    } catch (...) {
        modDBsub::gDBConn.reset();
        throw;
    }
    modDBsub::gDBConn.reset();
    if (!patched) {
        throw Failure(messages.Text());
    }
}

}  // namespace

CopiesFolder::CopiesFolder() {
    std::error_code failed;
    const std::filesystem::path root = std::filesystem::temp_directory_path(failed);
    std::random_device random;
    for (int attempt = 0; attempt < 100 && !failed; ++attempt) {
        const std::filesystem::path folder = root / ("tavrel-" + std::to_string(random()));
        if (std::filesystem::create_directory(folder, failed)) {
            path_ = FolderText(folder);
            return;
        }
    }
    throw MakeError(errors::kPathAccess, {}, FolderText(root));
}

CopiesFolder::~CopiesFolder() {
    std::error_code ignored;  // what cannot be removed is left to the system's cleaning
    std::filesystem::remove_all(std::filesystem::path(std::u8string(path_.begin(), path_.end())), ignored);
}

std::string CopiesFolder::File(const std::string& name) const {
    return path_ + platform::kPathSeparator + name;
}

PatchedCopy::PatchedCopy(const CopiesFolder& folder, const std::string& name, const std::string& original,
                         const std::string& password, const compare::Product& product)
    : path_(folder.File(name + ".mdb")) {
    try {
        compare::CopyDatabase(original, path_);
        Patch(product, path_, password);
    } catch (...) {
        Remove();
        throw;
    }
}

PatchedCopy::~PatchedCopy() {
    Remove();
}

void PatchedCopy::Remove() const {
    try {
        platform::DeleteFileIfThere(path_);
    } catch (const Error&) {
        // The folder goes at the end, and the file with it.
    }
}

}  // namespace tavrel::survey
