// Everything that makes new things in a database: tables, relations, rows.  One for each database that is
// open for writing.
//
// Objects that are made become visible at once.  Inside a statement a failure is the statement's to roll
// back; outside one each creation is all or nothing by itself.
#pragma once

#include <functional>
#include <limits>
#include <optional>
#include <set>
#include <unordered_map>

#include "jet/database/Database.h"
#include "jet/define/SystemRows.h"
#include "jet/define/TableWriter.h"

namespace tavrel::jet {

class Writer {
  public:
    /// `clock`: the time that objects are stamped with; nothing = the time when they are made.
    Writer(TableEdits& edits, Catalog& catalog, const FileHeader& header, std::optional<double> clock);
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// The objects and permissions that every new database holds.  REQUIRES: LayOutNewDatabase has been
    /// called, nothing else is in it.
    void AddEngineObjects();
    void CreateTable(const NewTable& wanted);
    void CreateRelation(const RelationInfo& relation);
    std::unique_ptr<TableWriter> Append(const std::string& table);
    /// Throws 3428 when a write has failed half way: the database is then not worth keeping.
    void Flush();

    // ---- for TableWriter and relations
    [[nodiscard]] WriteContext& Context() { return edits_.Context(); }
    /// Name of the table at a definition page; empty when there is none.
    [[nodiscard]] std::string TableName(PageNumber page) const;
    /// A table's writer is done: its counts and indexes have changed.
    void Release(PageNumber table);

  private:
    struct ObjectPlace {
        std::int32_t id = 0;
        std::int16_t type = 0;
        std::string name;
        RowPointer at{};  ///< its row in MSysObjects
    };
    friend class RelationMaker;

    [[nodiscard]] std::string PlaceKey(std::int32_t parentId, std::string_view name) const;
    void ReadObjects();
    void Register(const NewObject& object, RowPointer at);
    [[nodiscard]] const ObjectPlace* Find(std::int32_t parentId, std::string_view name) const;
    [[nodiscard]] const ObjectPlace* FindTable(std::string_view name) const;
    void AddObject(const NewObject& object, std::span<const Permission> permissions);
    [[nodiscard]] PropertyBlob PropertiesOf(const ObjectPlace& object);
    void GivePages(TableDefinition& table);
    void Atomically(const std::function<void()>& work);
    [[nodiscard]] double Now() const;

    TableEdits& edits_;
    Catalog& catalog_;
    SystemRows system_;
    std::uint16_t sortOrder_;
    std::optional<double> clock_;
    std::unordered_map<std::string, ObjectPlace> objects_;  ///< by PlaceKey
    std::int32_t nextObjectId_ =
        std::numeric_limits<std::int32_t>::min();  ///< of objects that are not tables
    std::set<PageNumber> open_;                    ///< tables with a TableWriter
};

}  // namespace tavrel::jet
