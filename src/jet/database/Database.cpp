#include "jet/database/Database.h"

#include <algorithm>
#include <map>

#include "jet/storage/SharedFile.h"
#include "platform/FileSystem.h"
#include "text/Case.h"

namespace tavrel::jet {

namespace {

/// The engine's error for a file that the platform would not open.
Error OpenError(const Error& cause, const std::string& path, bool inUse) {
    if (inUse) {
        return MakeError(errors::kFileInUse, {path});
    }
    switch (cause.Number()) {
        case errors::kFileNotFound:
            return MakeError(errors::kDatabaseNotFound, {path});
        case errors::kPathNotFound:
            return MakeError(errors::kBadPath, {path});
        default:
            return MakeError(platform::FolderExists(path) ? errors::kBadPath : errors::kNoFilePermission,
                             {path});
    }
}

ByteVector ReadFirstPage(platform::File& file) {
    ByteVector page(static_cast<std::size_t>(std::min<std::uint64_t>(file.Size(), kPageSize)));
    file.ReadAt(0, page);
    return page;
}

/// What an unfinished transaction has left beside the database: reading goes on from before it.
/// REQUIRES: the database is open here, so that nobody is in the middle of a transaction.
std::optional<OldPages> ReadOldPages(const std::string& path) {
    const std::string journal = JournalPath(platform::FollowLinks(path));
    try {
        if (!platform::FileExists(journal)) {
            return std::nullopt;
        }
        return ReadJournal(*platform::OpenFile(journal, platform::FileAccess::Read));
    } catch (const Error& error) {
        throw MakeError(errors::kCannotOpen, {path}, error.Description());
    }
}

}  // namespace

Database::~Database() = default;

namespace {

std::unique_ptr<platform::File> OpenOrThrow(const std::string& path, platform::FileAccess access) {
    try {
        return platform::OpenFile(path, access);
    } catch (const platform::FileInUse& error) {
        throw OpenError(error, path, true);
    } catch (const Error& error) {
        throw OpenError(error, platform::FullPath(path), false);
    }
}

/// A file that this process holds for changing is looked at through what it holds.
std::unique_ptr<platform::File> OpenForReading(const std::string& path) {
    try {
        return OpenOrThrow(path, platform::FileAccess::Read);
    } catch (const Error& error) {
        std::unique_ptr<platform::File> view =
            error.Number() == errors::kFileInUse ? OpenView(path) : nullptr;
        if (!view) {
            throw;
        }
        return view;
    }
}

/// Puts the pages back that an unfinished transaction has overwritten.  A journal that comes back when the
/// power fails would undo what is written from now on, whoever writes it.
void Recover(platform::File& file, const std::string& path, const JournalFiles& journal) {
    const std::optional<OldPages> old = ReadOldPages(path);
    if (old) {
        PutBack(*old, file);
    }
    journal.remove();
    if (old) {
        journal.syncFolder();
    }
}

}  // namespace

std::unique_ptr<Database> Database::Open(const std::string& path, const OpenOptions& options) {
    std::unique_ptr<platform::File> file = OpenForReading(path);
    std::optional<OldPages> old = ReadOldPages(path);
    return OpenFile(std::move(file), path, options, std::move(old));
}

std::unique_ptr<Database> Database::OpenForChanges(const std::string& path, const OpenOptions& options) {
    {
        std::unique_ptr<platform::File> looked = OpenOrThrow(path, platform::FileAccess::Read);
        std::optional<OldPages> old = ReadOldPages(path);
        OpenFile(std::move(looked), path, options, std::move(old));  // refusals change nothing
    }
    std::unique_ptr<platform::File> file = OpenOrThrow(path, platform::FileAccess::ReadWrite);
    JournalFiles journal = JournalFilesFor(platform::FollowLinks(path));
    Recover(*file, path, journal);
    std::unique_ptr<Database> database = OpenFile(ShareWithReaders(std::move(file), path), path, options);
    database->pager_->SetJournal(std::move(journal));
    return database;
}

std::unique_ptr<Database> Database::OpenFile(std::unique_ptr<platform::File> file, const std::string& path,
                                             const OpenOptions& options, std::optional<OldPages> old) {
    std::unique_ptr<Database> database(new Database());
    database->path_ = path;
    try {
        const bool changed = old && old->pages.contains(0);
        database->header_ = ParseHeader(
            changed ? ByteVector(old->pages.at(0)->begin(), old->pages.at(0)->end()) : ReadFirstPage(*file),
            path);
    } catch (const Error& error) {
        throw error.Number() == errors::kDeviceFault ? MakeError(errors::kReadFault, {}, error.Description())
                                                     : error;
    }
    const FileHeader& header = database->header_;
    if (options.checkPassword && !header.password.empty() && header.password != options.password) {
        throw MakeError(errors::kBadPassword);
    }
    auto pages = std::make_unique<PageFile>(std::move(file), header.pageKey);
    if (old) {
        pages->SetOldPages(std::move(*old));
    }
    database->pager_ = std::make_unique<class Pager>(std::move(pages));
    database->catalog_ = std::make_unique<class Catalog>(*database->pager_, header.ownerKey);
    if (!options.tolerant) {
        database->CheckOpening();
    }
    return database;
}

/// A database whose catalog cannot be read is refused at once.
void Database::CheckOpening() {
    try {
        catalog_->Objects();
    } catch (const Error& error) {
        if (error.Number() == errors::kDamaged) {
            throw MakeError(errors::kCannotOpen, {path_}, error.Description());
        }
        throw;
    }
}

namespace {

FieldInfo DescribeField(const Column& column, const PropertyBlob& properties) {
    const Property* defaultValue = properties.OfColumn(column.name, "DefaultValue");
    const Property* required = properties.OfColumn(column.name, "Required");
    const Property* zeroLength = properties.OfColumn(column.name, "AllowZeroLength");
    FieldInfo field;
    field.name = column.name;
    field.daoType = DaoType(column.type);
    field.size = column.DaoSize();
    field.defaultValue = defaultValue != nullptr ? defaultValue->AsText() : "";
    field.required = required != nullptr && required->AsBoolean();
    // Without the property the engine takes empty texts, so that is what is reported.
    field.allowZeroLength = zeroLength != nullptr ? zeroLength->AsBoolean() : IsText(column.type);
    field.autonumber = column.Autonumber();
    return field;
}

IndexInfo DescribeIndex(const TableDefinition& table, const LogicalIndex& logical) {
    if (logical.real >= table.realIndexes.size()) {
        ThrowDamaged("인덱스 " + logical.name + "의 트리가 없음");
    }
    const RealIndex& real = table.realIndexes[logical.real];
    IndexInfo index;
    index.name = logical.name;
    index.primary = logical.kind == LogicalKind::Primary;
    index.foreign = logical.kind == LogicalKind::Relation;
    index.unique = real.Unique();
    index.ignoreNulls = real.IgnoreNulls();
    index.required = real.Required();
    for (const IndexColumn& column : real.columns) {
        const std::size_t place = table.FindColumn(column.number);
        if (place == TableDefinition::npos) {
            ThrowDamaged("인덱스 " + logical.name + "의 열이 없음");
        }
        index.fields.push_back({table.columns[place].name, !column.ascending});
    }
    return index;
}

}  // namespace

TableInfo Database::Describe(const CatalogObject& object) {
    const TableDefinition& table = catalog_->Definition(object.DefinitionPage());
    const PropertyBlob properties = catalog_->Properties(object);
    TableInfo info;
    info.name = object.name;
    info.system = object.IsSystem();
    for (const std::size_t place : table.ColumnsInOrder()) {
        info.fields.push_back(DescribeField(table.columns[place], properties));
    }
    for (const LogicalIndex& logical : table.logicalIndexes) {
        if (logical.side != RelationSide::Parent) {
            info.indexes.push_back(DescribeIndex(table, logical));
        }
    }
    std::stable_sort(info.indexes.begin(), info.indexes.end(), [](const IndexInfo& a, const IndexInfo& b) {
        return text::Lower(a.name) < text::Lower(b.name);
    });
    return info;
}

namespace {

RelationInfo DescribeRelation(std::vector<RelationRow>& rows) {
    std::stable_sort(rows.begin(), rows.end(),
                     [](const RelationRow& a, const RelationRow& b) { return a.column < b.column; });
    const RelationRow& first = rows.front();
    RelationInfo relation;
    relation.name = first.name;
    relation.table = first.childTable;
    relation.referencedTable = first.parentTable;
    relation.updateCascade = (first.grbit & relationFlags::kCascadeUpdates) != 0;
    relation.deleteCascade = (first.grbit & relationFlags::kCascadeDeletes) != 0;
    relation.deleteSetsNull = (first.grbit & relationFlags::kDeletesSetNull) != 0;
    relation.enforced = (first.grbit & relationFlags::kNotEnforced) == 0;
    relation.oneToOne = (first.grbit & relationFlags::kOneToOne) != 0;
    for (const RelationRow& row : rows) {
        relation.columns.push_back(row.childColumn);
        relation.referencedColumns.push_back(row.parentColumn);
    }
    return relation;
}

}  // namespace

std::vector<RelationInfo> Database::Relations() {
    std::map<std::string, std::vector<RelationRow>> groups;
    for (RelationRow& row : catalog_->RelationRows()) {
        groups[row.name].push_back(std::move(row));
    }
    std::vector<RelationInfo> relations;
    relations.reserve(groups.size());
    for (auto& [name, rows] : groups) {
        relations.push_back(DescribeRelation(rows));
    }
    std::stable_sort(relations.begin(), relations.end(), [](const RelationInfo& a, const RelationInfo& b) {
        return text::Lower(a.name) < text::Lower(b.name);
    });
    return relations;
}

}  // namespace tavrel::jet
