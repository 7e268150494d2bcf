// The script as a text, ready for the sql command.
#pragma once

#include <ostream>
#include <string>

#include "script/Script.h"

namespace tavrel::report {

/// What is to be run in one transaction; what loses data and what stays different in comments.
void WriteScript(std::ostream& out, const script::Script& script, const std::string& pathA,
                 const std::string& pathB);

}  // namespace tavrel::report
