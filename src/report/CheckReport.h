// What an integrity check found.
#pragma once

#include <ostream>
#include <string_view>

#include "jet/check/Check.h"
#include "report/TextTable.h"

namespace tavrel::report {

/// A line for each finding, "오류: WHERE: TEXT" or "참고: …"; one line that says so when there is none.
/// `counts`: also what was looked at.
void WriteCheckText(std::ostream& out, const jet::CheckReport& check, bool counts, const TextStyle& style);

/// {"file", "errors", "notes", "findings": [{"severity": "error"|"note", "code", "where", "text"}, …],
/// "counts": {…}}
void WriteCheckJson(std::ostream& out, const jet::CheckReport& check, std::string_view file);

}  // namespace tavrel::report
