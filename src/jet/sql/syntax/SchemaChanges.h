// What definition statements and transactions ask of the engine.  Names come as written, quotes removed;
// whether what they name exists is for the engine to find out, with the numbers given here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/catalog/Schema.h"

namespace tavrel::jet::sql {

/// A column as a statement declares it.  ALTER COLUMN needs to know what was said and what was not.
struct ColumnDefinition {
    NewColumn column;              ///< `required` is true when NOT NULL was written
    bool defaultGiven = false;     ///< column.defaultValue is the text of the DEFAULT clause
    std::optional<bool> nullable;  ///< false: NOT NULL was written; true: NULL was
    bool seedGiven = false;        ///< COUNTER(seed, increment)
    std::int32_t seed = 1;
    std::int32_t increment = 1;
};

struct ForeignKeyDefinition {
    /// `name` empty = to be generated; `referencedColumns` empty = the parent's primary key.
    RelationInfo relation;
    bool indexed = true;  ///< false: NO INDEX
    bool deleteSetsNull = false;
    bool updateSetsNull = false;
    bool deleteGiven = false;  ///< an ON DELETE clause was written, NO ACTION included
    bool updateGiven = false;
};

/// Indexes and keys without a name get one from the engine.
struct TableCreation {
    std::string name;
    std::vector<ColumnDefinition> columns;
    std::vector<NewIndex> indexes;
    std::vector<ForeignKeyDefinition> foreignKeys;
};

class SchemaChanges {
  public:
    virtual ~SchemaChanges() = default;
    /// Throws 3010, 3090, 3190, 3191, 3283, 3375, 3382, 3409, 3626 and those of AddForeignKey.
    virtual void CreateTable(const TableCreation& table) = 0;
    /// Throws 3371, 3190, 3380, 3382.
    virtual void AddColumn(const std::string& table, const ColumnDefinition& column) = 0;
    /// Throws 3371, 3381, 3720, 3764, 3282.
    virtual void AlterColumn(const std::string& table, const ColumnDefinition& column) = 0;
    /// An empty text takes the default away.  Throws 3371, 3381.
    virtual void SetDefault(const std::string& table, const std::string& column, const std::string& text) = 0;
    /// Throws 3371, 3381, 3280, 3303.
    virtual void DropColumn(const std::string& table, const std::string& column) = 0;
    /// CREATE INDEX, and the constraints PRIMARY KEY and UNIQUE.  Throws 3371, 3409, 3375, 3283, 3022, 3058,
    /// 3626.
    virtual void AddIndex(const std::string& table, const NewIndex& index) = 0;
    /// Throws 3371, 3409, 3368, 3609, 3373, 3378, 3375, 3626, 3379, 3206, 3707.
    virtual void AddForeignKey(const ForeignKeyDefinition& key) = 0;
    /// An index or a relation of the table.  Throws 3371.
    virtual void DropConstraint(const std::string& table, const std::string& name) = 0;
    /// Throws 3371, 3281.
    virtual void DropIndex(const std::string& table, const std::string& name) = 0;
    /// Throws 3376, 3281, 3211.
    virtual void DropTable(const std::string& table) = 0;
};

class Transactions {
  public:
    virtual ~Transactions() = default;
    virtual void Begin() = 0;
    /// Both throw 3034 when no transaction has begun.
    virtual void Commit() = 0;
    virtual void Rollback() = 0;
    /// Round every statement that changes something.  After an exception, from EndStatement too,
    /// UndoStatement puts everything back as it was at BeginStatement.
    virtual void BeginStatement() = 0;
    virtual void EndStatement() = 0;
    virtual void UndoStatement() noexcept = 0;
};

}  // namespace tavrel::jet::sql
