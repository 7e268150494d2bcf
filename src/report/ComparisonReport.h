// A finished comparison as text, CSV and JSON.  Rows that "differences only" hides are left out.
#pragma once

#include <ostream>

#include "compare/ComparisonResult.h"
#include "report/DetailsReport.h"
#include "report/TextTable.h"

namespace tavrel::report {

/// Both paths, the two sides next to each other with the mark between them and what is different behind, the
/// message.
void WriteComparisonText(std::ostream& out, const compare::ComparisonResult& result, const TextStyle& style);

/// mark, a_table … a_zro, b_table … b_zro, red (names of the differing cells, blank between), blue (a, b or
/// nothing).
void WriteComparisonCsv(std::ostream& out, const compare::ComparisonResult& result);

/// The same for a file, which a spreadsheet may open: Korean ones take it for UTF-8 only with the mark in
/// front.
void WriteComparisonCsvFile(std::ostream& out, const compare::ComparisonResult& result);

/// {"a", "b", "differences", "message", "rows": [{"mark", "a": {…}|null, "b": {…}|null, "red": […], "blue"},
/// …]}, a row a line, in grid order.
void WriteComparisonJson(std::ostream& out, const compare::ComparisonResult& result);
/// The same; with details (not owned) "details": […] stands behind the rows.
void WriteDetailedJson(std::ostream& out, const compare::ComparisonResult& result, const Details* details);

/// What is different in a row, in words: "다름: Type, Size", "B에만 있음"; empty for a row without mark.
std::string DifferenceInWords(const compare::ResultRow& row);

}  // namespace tavrel::report
