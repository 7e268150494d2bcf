// A query as written made into one that can be run.
#pragma once

#include "jet/sql/plan/Source.h"
#include "jet/sql/syntax/Ast.h"

namespace tavrel::jet::sql {

/// `outer` is the scope of the query round it, or null.  The context and the outer scope must outlive the
/// plan; the tree need not.  Throws 3078 for a missing table, 3079, 3122 and the numbers of types; names
/// without a column are noted in the context.
std::unique_ptr<QueryPlan> CompileQuery(Context& context, const Query& query, Scope* outer);

}  // namespace tavrel::jet::sql
