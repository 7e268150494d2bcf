// How the commands that look into one file open it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "jet/database/Database.h"

namespace tavrel::cli {

/// Opens for looking.  A password that is given must be the file's (3031); without one the file is not asked
/// for its password.  Throws like jet::Database::Open.
std::unique_ptr<jet::Database> OpenToInspect(const std::string& file,
                                             const std::optional<std::string>& password);

/// The same for a file that may be damaged: opened as far as it can be read.
std::unique_ptr<jet::Database> OpenToCheck(const std::string& file,
                                           const std::optional<std::string>& password);

}  // namespace tavrel::cli
