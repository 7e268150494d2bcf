// The creating half of Database.
#include "jet/database/Database.h"
#include "jet/define/CreateClock.h"
#include "jet/define/Creation.h"
#include "jet/define/NewDatabase.h"
#include "platform/FileSystem.h"
#include "platform/UnusedName.h"
#include "text/Utf.h"

namespace tavrel::jet {

namespace {

constexpr std::size_t kMaxPasswordUnits = 20;

FileHeader HeaderFor(const CreateOptions& options) {
    if (text::Utf16Length(options.password) > kMaxPasswordUnits) {
        throw MakeError(errors::kBadPassword, {}, "암호는 20자까지");
    }
    FileHeader header;
    header.codePage = CodePageOf(options.sortOrder);
    header.sortOrder = options.sortOrder;
    header.password = options.password;
    header.pageKey = options.pageKey;
    header.created = options.created ? *options.created : LocalNow();
    return header;
}

/// The engine's error for a new file of that name that cannot be made.
Error CreateError(const Error& cause, const std::string& path) {
    switch (cause.Number()) {
        case errors::kFileExists:
            return MakeError(errors::kDatabaseExists, {}, path);
        case errors::kPathNotFound:
            return MakeError(errors::kBadPath, {path});
        default:
            return MakeError(errors::kNoFilePermission, {path}, cause.Description());
    }
}

/// An empty file beside the one that is to be; `name` becomes its own.
std::unique_ptr<platform::File> OpenBeside(const std::string& path, std::string& name) {
    while (true) {
        name = platform::UnusedNameBeside(path);
        try {
            return platform::OpenFile(name, platform::FileAccess::CreateNew);
        } catch (const Error& error) {
            if (error.Number() != errors::kFileExists) {
                throw;
            }
            // Somebody else has taken the name in between.
        }
    }
}

std::unique_ptr<platform::File> OpenNewFile(const std::string& path, std::string& name) {
    try {
        if (platform::FileExists(path) || platform::FolderExists(path)) {
            throw MakeError(errors::kFileExists);
        }
        return OpenBeside(path, name);
    } catch (const Error& error) {
        throw CreateError(error, path);
    }
}

}  // namespace

UnfinishedFile::~UnfinishedFile() {
    if (path_.empty()) {
        return;
    }
    try {
        platform::DeleteFileIfThere(path_);
    } catch (...) {
        // It was never a database; that it cannot be removed either is no news to whom the first failure went
        // to.
    }
}

std::unique_ptr<Database> Database::Create(const std::string& path, const CreateOptions& options) {
    FileHeader header = HeaderFor(options);
    std::string temporary;
    std::unique_ptr<platform::File> file = OpenNewFile(path, temporary);
    auto creation = std::make_shared<Creation>(temporary);
    std::unique_ptr<Database> database(new Database());
    database->creation_ = creation;
    database->path_ = path;
    database->pager_ =
        std::make_unique<class Pager>(std::make_unique<PageFile>(std::move(file), options.pageKey));
    PageAllocator allocator(*database->pager_);
    LayOutNewDatabase(*database->pager_, allocator, header);
    database->header_ = header;
    database->catalog_ = std::make_unique<class Catalog>(*database->pager_, header.ownerKey);
    creation->edits = std::make_unique<TableEdits>(*database->pager_, *database->catalog_, header.ownerKey);
    creation->writer =
        std::make_unique<Writer>(*creation->edits, *database->catalog_, header, options.created);
    creation->writer->AddEngineObjects();
    return database;
}

Writer& Database::RequireWriter() {
    if (!creation_ || !creation_->writer) {
        throw MakeError(errors::kReadOnly);
    }
    return *creation_->writer;
}

void Database::CreateTable(const NewTable& wanted) {
    RequireWriter().CreateTable(wanted);
}

void Database::CreateRelation(const RelationInfo& relation) {
    RequireWriter().CreateRelation(relation);
}

std::unique_ptr<TableWriter> Database::Append(const std::string& table) {
    return RequireWriter().Append(table);
}

void Database::Flush() {
    RequireWriter().Flush();
    if (creation_->file.Path().empty()) {
        return;  // it has its name since an earlier call
    }
    try {
        platform::RenameNew(creation_->file.Path(), path_);
    } catch (const Error& error) {
        throw CreateError(error, path_);
    }
    creation_->file.Keep();
}

}  // namespace tavrel::jet
