// What the marks of a comparison do not show, below its rows: columns, indexes and relations to the last
// rule.
#pragma once

#include <ostream>
#include <vector>

#include "details/Differences.h"
#include "report/JsonWriter.h"
#include "report/TextTable.h"

namespace tavrel::report {

using Details = std::vector<details::Difference>;

/// "세부 차이가 없습니다." or how many there are.
std::string DetailsMessage(const Details& details);

/// A heading, a line for each thing that differs, the message.
void WriteDetailsText(std::ostream& out, const Details& details, const TextStyle& style);

/// kind, table, name, item, a, b; behind an empty line, for it stands below other rows.
void WriteDetailsCsv(std::ostream& out, const Details& details);

/// [{"kind", "table", "name", "differs": […], "a": {…}|null, "b": {…}|null}, …]
void WriteDetailsJson(JsonWriter& json, const Details& details);

/// A section with a table; the page around it has the style.
void WriteDetailsHtml(std::ostream& out, const Details& details);

}  // namespace tavrel::report
