// A statement in, rows or a count out.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/Value.h"
#include "jet/sql/SchemaChanges.h"
#include "jet/sql/TableAccess.h"

namespace tavrel::jet::sql {

class TextComparer;

/// Everything a statement works with.  The parts must outlive the results.
struct Workspace {
    Tables& tables;
    SchemaChanges& schema;
    Transactions& transactions;
    const TextComparer& texts;
    std::function<Date()> now;             ///< local clock, whole seconds; none = the system's
    std::optional<std::int32_t> identity;  ///< the last counter value handed out: @@IDENTITY
    std::uint64_t maxRowVisits = 0;  ///< 3035 beyond so many rows looked at by one statement; 0 = no limit
};

struct ResultColumn {
    std::string name;
    ColumnType type = ColumnType::Text;
    unsigned size = 0;  ///< Text: characters, 0 when an expression gives it
};

/// Rows of a query, made while they are asked for.
class ResultSet {
  public:
    virtual ~ResultSet() = default;
    [[nodiscard]] virtual const std::vector<ResultColumn>& Columns() const = 0;
    /// False at the end.  Throws what evaluating the row throws.
    virtual bool Next() = 0;
    /// Good until the next Next.  REQUIRES: Next was true, column < Columns().size().
    [[nodiscard]] virtual const Value& Get(std::size_t column) = 0;
};

struct ExecuteResult {
    std::unique_ptr<ResultSet> rows;  ///< queries only
    std::int64_t affected = 0;        ///< rows inserted, updated or deleted; 0 for the rest
};

/// Executes one statement.  Everything that depends on names and types is checked before the first row is
/// read.  What is changed is changed wholly or not at all. Throws an Error with the engine's number;
/// AdoNumber (AdoCodes.h) gives what the provider reports for it.
ExecuteResult Execute(std::string_view statement, Workspace& workspace);

}  // namespace tavrel::jet::sql
