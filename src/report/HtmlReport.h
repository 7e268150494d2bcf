// A finished comparison as one HTML file that needs nothing else: it can be mailed, opened and printed.
#pragma once

#include <ostream>

#include "compare/ComparisonResult.h"
#include "report/DetailsReport.h"

namespace tavrel::report {

/// The page.  All rows are in it; those that "differences only" hides are there behind the page's own switch,
/// which then stands on.  Every text out of a database is escaped.
void WriteComparisonHtml(std::ostream& out, const compare::ComparisonResult& result);
/// The same; details (not owned) follow below the rows.
void WriteDetailedHtml(std::ostream& out, const compare::ComparisonResult& result, const Details* details);

}  // namespace tavrel::report
