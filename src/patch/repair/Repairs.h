// Data repair: steps that do more than change the schema.
#pragma once

#include <string_view>

namespace tavrel::patch {

/// Makes office_store and fills it with every pair of an office and a storehouse.  Throws Error.
void CreateTBL_office_store();

/// Marks the bill notes that payments have used (outtype 2), and says where and when for receivable ones.
/// What it changes goes to the update log.  Reports its own errors.
void BillNoteSubRtn();

/// Looks at the login passwords; changes nothing.  Reports its own errors.
void LoginPwdUpdate();

using Repair = void (*)();

/// By name.  There must be one.
Repair FindRepair(std::string_view name);

}  // namespace tavrel::patch
