// What a FROM clause names, and the columns that names in a query can mean.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "jet/sql/expression/Node.h"
#include "jet/sql/plan/Workspace.h"

namespace tavrel::jet::sql {

/// What one statement shares among its parts.
struct Context {
    Workspace& workspace;
    std::uint64_t visits = 0;
    std::vector<std::string> missingNames;  ///< what the statement names and nothing provides, each once

    /// Counts a row, or a pair of rows, that is looked at.  Throws 3035 when it is one too many.
    void Visit() {
        if (++visits > workspace.maxRowVisits && workspace.maxRowVisits != 0) {
            ThrowTooMany();
        }
    }
    /// A name without a column: a parameter that nobody fills.
    void NoteMissing(std::string_view name);
    /// Throws 3061 when there are such names.
    void RequireAllNames() const;
    [[nodiscard]] const TextComparer& Texts() const { return workspace.texts; }

  private:
    [[noreturn]] static void ThrowTooMany();
};

/// A query made ready: rows of values.
class QueryPlan {
  public:
    virtual ~QueryPlan() = default;
    /// Goes before the first row; may be called again.
    virtual void Open() = 0;
    virtual bool Next() = 0;
    /// Good until the next Next.
    [[nodiscard]] virtual const Value& Output(std::size_t column) = 0;

    std::vector<ResultColumn> columns;
    std::vector<StaticType> types;
    bool correlated = false;  ///< speaks of columns of an outer query
};

struct SourceColumn {
    std::string name;
    ColumnType type = ColumnType::Text;
    StaticType staticType;
    unsigned size = 0;
};

/// A table or a query in a FROM clause.
class Source {
  public:
    Source(std::string alias, std::shared_ptr<TableAccess> table);
    Source(std::string alias, std::unique_ptr<QueryPlan> query);

    [[nodiscard]] const std::string& Alias() const { return alias_; }
    [[nodiscard]] TableAccess* Table() const { return table_.get(); }
    [[nodiscard]] const std::shared_ptr<TableAccess>& SharedTable() const { return table_; }
    [[nodiscard]] QueryPlan* Query() const { return query_.get(); }
    [[nodiscard]] std::size_t ColumnCount() const { return cells_.size(); }
    [[nodiscard]] SourceColumn ColumnAt(std::size_t column) const;
    [[nodiscard]] const std::string& ColumnName(std::size_t column) const;

    /// The cell of a column, made when it is first asked for.
    Cell& CellOf(std::size_t column);
    /// The cell of the row's id.  REQUIRES: a table.
    Cell& RowIdCell();

    /// Columns that have cells, ascending.
    [[nodiscard]] std::vector<std::size_t> UsedColumns() const;
    /// All cells, the row id's included.
    [[nodiscard]] std::vector<Cell*> UsedCells() const;
    /// The reader stands on another row.
    void Moved(RowReader& reader);

  private:
    struct Used {
        std::size_t column;
        Cell* cell;
    };
    std::string alias_;
    std::shared_ptr<TableAccess> table_;
    std::unique_ptr<QueryPlan> query_;
    std::vector<std::unique_ptr<Cell>> cells_;  ///< by column
    std::unique_ptr<Cell> rowId_;
    std::vector<Used> used_;
};

class Grouping;

/// The sources of one SELECT, inside those of the queries round it.
struct Scope {
    std::vector<std::unique_ptr<Source>> sources;
    Scope* outer = nullptr;
    Grouping* grouping = nullptr;  ///< set once rows are grouped: only grouped columns can be spoken of
    bool reachedOut = false;       ///< a name was found in an outer scope only
    std::uint64_t touched = 0;     ///< a bit for each source that an inner query spoke of
};

struct FoundColumn {
    Scope* scope = nullptr;  ///< null: no such column anywhere
    std::size_t source = 0;
    std::size_t column = 0;
    bool operator==(const FoundColumn&) const = default;
};

/// Looks a name up from the inside outwards.  Throws 3079 when it could mean several columns of one scope.
FoundColumn FindColumn(Scope& scope, std::string_view qualifier, std::string_view name);

}  // namespace tavrel::jet::sql
