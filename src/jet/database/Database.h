// A Jet 4.0 database file, open.  Not for use from several threads at once.
//
// Every failure is a tavrel::Error with the engine's number.  A database opened for reading never takes write
// access and reads only the pages that are asked for.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/catalog/Schema.h"
#include "jet/catalog/TableDefinition.h"
#include "jet/storage/FileHeader.h"
#include "jet/storage/Pager.h"

namespace tavrel::jet {

struct OpenOptions {
    std::string password;       ///< ignored by a database that has none
    bool checkPassword = true;  ///< false: look into a protected file without knowing the password
    bool tolerant = false;      ///< true: open a file whose catalog is cut off or damaged, too
};

struct CreateOptions {
    std::uint16_t sortOrder = kSortKorean;
    std::string password;
    std::uint32_t pageKey = 0;
    std::optional<double> created;  ///< default: now
};

class RowCursor;
class TableWriter;

class Database {
  public:
    /// Opens for reading.  A file that an EditSession of this process holds is read as it was when it was
    /// opened here: what had been committed then.  Throws 3024 (no such file), 3044 (a folder, or one that is
    /// missing), 3031 (password), 3041, 3045, 3049, 3051, 3343, 3356.
    static std::unique_ptr<Database> Open(const std::string& path, const OpenOptions& options = {});
    /// Opens for changing, which EditSession does: nobody else may have the file open.  What an unfinished
    /// transaction has left is undone first.
    static std::unique_ptr<Database> OpenForChanges(const std::string& path, const OpenOptions& options = {});
    /// The same as Open on a file that is open already; `path` is for messages.  `old`: the content that an
    /// unfinished transaction has overwritten.
    static std::unique_ptr<Database> OpenFile(std::unique_ptr<platform::File> file, const std::string& path,
                                              const OpenOptions& options = {},
                                              std::optional<OldPages> old = std::nullopt);
    /// Makes a new database.  Throws 3204 when the file exists, 3031 for a password of more than 20
    /// characters.  Until Flush the file lies under another name in the same folder; without one it is
    /// removed at the end.
    static std::unique_ptr<Database> Create(const std::string& path, const CreateOptions& options = {});
    ~Database();

    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] const FileHeader& Header() const { return header_; }
    [[nodiscard]] std::uint64_t FileBytes() const { return std::uint64_t{kPageSize} * pager_->PageCount(); }
    [[nodiscard]] class Pager& Pager() { return *pager_; }
    [[nodiscard]] class Catalog& Catalog() { return *catalog_; }

    /// Structure of a table.  `object` comes from Catalog().Objects().  Throws 3011/3428 when its definition
    /// is broken.
    TableInfo Describe(const CatalogObject& object);
    /// Relations by lower-case name.
    std::vector<RelationInfo> Relations();

    // ---- creating (see Writer.cpp)
    void CreateTable(const NewTable& wanted);
    void CreateRelation(const RelationInfo& relation);
    /// Rows are appended through the writer; its Finish (or destructor) builds the indexes.
    std::unique_ptr<TableWriter> Append(const std::string& table);
    /// Writes everything to the file and syncs it; the first time, the file gets its name.  Throws 3204 when
    /// another has come to have it.
    void Flush();

  private:
    Database() = default;
    void CheckOpening();
    /// Throws 3027 when the database was opened for reading.
    class Writer& RequireWriter();

    std::string path_;
    FileHeader header_;
    /// Set when the database is being made.  Stands before the pager so that the file is closed when an
    /// unfinished database removes it.
    std::shared_ptr<struct Creation> creation_;
    std::unique_ptr<class Pager> pager_;
    std::unique_ptr<class Catalog> catalog_;
};

}  // namespace tavrel::jet
