// What a grouped query computes for its groups.
#pragma once

#include "jet/sql/plan/RowStream.h"
#include "jet/sql/syntax/Ast.h"

namespace tavrel::jet::sql {

enum class AggregateKind : std::uint8_t { Count, Minimum, Maximum, Sum, Average, First, Last };

/// One COUNT(…), MAX(…) … of a query.
struct Aggregate {
    AggregateKind kind = AggregateKind::Count;
    const Expression* expression = nullptr;  ///< only while the query is compiled
    NodePtr argument;                        ///< null: COUNT(*)
    StaticType type;                         ///< of the result
    Cell result;
};

/// REQUIRES: `name` is the upper-case name of an aggregate.
AggregateKind AggregateKindOf(std::string_view name);
/// Throws 3464 for sums of what cannot be added up.
StaticType AggregateType(AggregateKind kind, StaticType argument);

/// One expression of GROUP BY.
struct GroupKey {
    const Expression* expression = nullptr;  ///< only while the query is compiled
    NodePtr node;
    FoundColumn column;  ///< when the expression is a column
    Cell result;
};

class Grouping {
  public:
    std::vector<std::unique_ptr<GroupKey>> keys;
    std::vector<std::unique_ptr<Aggregate>> aggregates;

    [[nodiscard]] GroupKey* FindKey(const FoundColumn& column) const;
};

/// One row for each group, by ascending keys: the results' cells show it.  Without keys there is always one
/// group.
RowStreamPtr MakeGrouping(Context& context, RowStreamPtr rows, Grouping& grouping);
/// The same for COUNT(*) alone over a whole table: no row is read.  REQUIRES: no keys, every aggregate a
/// COUNT(*).
RowStreamPtr MakeTableCount(Source& source, Grouping& grouping);

}  // namespace tavrel::jet::sql
