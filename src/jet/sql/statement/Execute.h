// A statement in, rows or a count out.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "jet/catalog/Value.h"
#include "jet/sql/plan/Workspace.h"

namespace tavrel::jet::sql {

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
/// The rooms above know what a provider reports for it.
ExecuteResult Execute(std::string_view statement, Workspace& workspace);

}  // namespace tavrel::jet::sql
