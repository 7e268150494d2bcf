// Queries inside expressions.  One that speaks of nothing outside is run once.
#pragma once

#include "jet/sql/plan/Source.h"

namespace tavrel::jet::sql {

/// The value of the only row, Null when there is none.  Throws 3354 for a second row.
NodePtr MakeScalar(std::unique_ptr<QueryPlan> query);
NodePtr MakeExists(std::unique_ptr<QueryPlan> query);
/// Throws 3464 when the two can never be equal.
NodePtr MakeInQuery(NodePtr value, std::unique_ptr<QueryPlan> query, bool negated, const TextComparer& texts);

}  // namespace tavrel::jet::sql
