// Default values in DEFAULT clauses.
#pragma once

#include <optional>
#include <string>

namespace tavrel::script {

/// What a DEFAULT clause can say to get this default: the text itself where the clause keeps it to the
/// letter, else one that means the same (the leading = is left off).  Nothing when statements do not take it.
std::optional<std::string> WritableDefault(const std::string& text);

}  // namespace tavrel::script
