// The lock file that the engine of other programs keeps beside a database for as long as somebody has it
// open.
#pragma once

#include <string>

namespace tavrel::jet::compact {

/// Throws 3704, naming computer and user, when somebody has the database open.  A lock file that nobody holds
/// is left over from a session that ended early and means nothing.
void RequireNobodyHasOpen(const std::string& database);

}  // namespace tavrel::jet::compact
