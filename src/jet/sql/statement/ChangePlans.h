// INSERT, UPDATE and DELETE made ready.  Making a plan checks names and types; Run reads and writes, and
// returns how many rows were written.  The trees need not outlive the plans.
#pragma once

#include "jet/sql/plan/RowStream.h"
#include "jet/sql/statement/TableChanges.h"
#include "jet/sql/syntax/Ast.h"

namespace tavrel::jet::sql {

class ChangePlan {
  public:
    virtual ~ChangePlan() = default;
    virtual std::int64_t Run() = 0;
};
using ChangePlanPtr = std::unique_ptr<ChangePlan>;

/// Throws 3192, 3127, 3346.
ChangePlanPtr PlanInsert(Context& context, const InsertStatement& statement);
/// Throws 3078, 3073, 3113.
ChangePlanPtr PlanUpdate(Context& context, const UpdateStatement& statement);
/// Throws 3078.
ChangePlanPtr PlanDelete(Context& context, const DeleteStatement& statement);

}  // namespace tavrel::jet::sql
