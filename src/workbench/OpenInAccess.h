// Open in Access, the window's command: everything but the window.
#pragma once

#include <functional>
#include <string>

#include "platform/Dialogs.h"

namespace tavrel::workbench {

/// Opens the database that the field names with the program that the system associates with it.
/// `validateDbPath` checks the path; false when it has reported what is wrong.  `open` stands in for the
/// system in tests; empty = the system.
void cmdAccess_Click(const platform::TextField& txtDBPath,
                     const std::function<bool(const std::string& path)>& validateDbPath,
                     const std::function<void(const std::string& path)>& open = {});

}  // namespace tavrel::workbench
