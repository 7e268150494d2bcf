// The default values of columns: expression texts that are evaluated when a row is inserted.
#pragma once

#include "jet/sql/expression/Nodes.h"
#include "jet/sql/plan/Source.h"

namespace tavrel::jet::sql {

/// A default ready to be evaluated.  A leading = is taken off; functions without arguments may stand without
/// parentheses. Throws 3355 for a text that is no expression, 3388 for names that mean nothing.
NodePtr CompileDefault(Context& context, std::string_view text, std::string_view column);

}  // namespace tavrel::jet::sql
