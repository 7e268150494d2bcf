#include "report/ComparisonReport.h"

#include "report/CsvWriter.h"
#include "report/DisplayText.h"
#include "report/JsonWriter.h"
#include "report/SideCells.h"
#include "text/Case.h"

namespace tavrel::report {

namespace {

using compare::kCellCount;

void WriteCsvHeader(CsvWriter& csv) {
    csv.Field("mark");
    for (const std::string_view side : {"a_", "b_"}) {
        for (const std::string_view name : compare::kCellNames) {
            csv.Field(std::string(side) + std::string(name));
        }
    }
    csv.Field("red");
    csv.Field("blue");
    csv.EndRow();
}

void WriteCsvRow(CsvWriter& csv, const compare::ResultRow& row) {
    csv.Field(row.mark);
    for (const auto& side : {row.a, row.b}) {
        for (const std::string_view text : side.value_or(compare::SideCells{})) {
            csv.Field(text);
        }
    }
    std::string red;
    for (const std::string_view name : row.DifferingNames()) {
        red += (red.empty() ? "" : " ") + std::string(name);
    }
    csv.Field(red);
    csv.Field(row.OneSidedName());
    csv.EndRow();
}

void WriteJsonRow(JsonWriter& json, const compare::ResultRow& row) {
    json.BeginObject(JsonLayout::OneLine);
    json.Member("mark", row.mark);
    json.Key("a");
    WriteJsonCells(json, row.a);
    json.Key("b");
    WriteJsonCells(json, row.b);
    json.Key("red");
    json.BeginArray();
    for (const std::string_view name : row.DifferingNames()) {
        json.String(name);
    }
    json.EndArray();
    json.Member("blue", row.OneSidedName());
    json.EndObject();
}

template <class Use>
void ForEachShownRow(const compare::ComparisonResult& result, Use use) {
    for (std::size_t index = 0; index < result.RowCount(); ++index) {
        if (const compare::ResultRow row = result.Row(index); !row.hidden) {
            use(row);
        }
    }
}

/// One field whose name is written in two ways: no cell is marked, though others may differ.
bool SameFieldOtherCase(const compare::ResultRow& row) {
    return text::EqualIgnoringCase((*row.a)[kTableCell], (*row.b)[kTableCell]) &&
           text::EqualIgnoringCase((*row.a)[kFieldCell], (*row.b)[kFieldCell]);
}

/// Captions, comma between.  REQUIRES: the row has both sides.
std::string DifferingCells(const compare::ResultRow& row) {
    const bool byText = row.differing == 0 && SameFieldOtherCase(row);
    std::string cells;
    for (std::size_t cell = 0; cell < row.compared; ++cell) {
        if (row.Differs(cell) || (byText && !text::EqualIgnoringCase((*row.a)[cell], (*row.b)[cell]))) {
            cells += (cells.empty() ? "" : ", ") + std::string(CaptionOf(cell));
        }
    }
    return cells;
}

}  // namespace

std::string DifferenceInWords(const compare::ResultRow& row) {
    if (row.mark.empty()) {
        return {};
    }
    if (!row.a || !row.b) {
        return row.a ? "A에만 있음" : "B에만 있음";
    }
    const std::string cells = DifferingCells(row);
    return cells.empty() ? "필드가 다름" : "다름: " + cells;
}

void WriteComparisonCsv(std::ostream& out, const compare::ComparisonResult& result) {
    CsvWriter csv(out);
    WriteCsvHeader(csv);
    ForEachShownRow(result, [&](const compare::ResultRow& row) { WriteCsvRow(csv, row); });
}

void WriteComparisonCsvFile(std::ostream& out, const compare::ComparisonResult& result) {
    out << kByteOrderMark;
    WriteComparisonCsv(out, result);
}

void WriteDetailedJson(std::ostream& out, const compare::ComparisonResult& result, const Details* details) {
    JsonWriter json(out, JsonText::Utf8, JsonLayout::Indented);
    json.BeginObject();
    json.Member("a", result.PathA());
    json.Member("b", result.PathB());
    json.Member("differences", std::int64_t{result.Differences()});
    json.Member("message", result.Message());
    json.Key("rows");
    json.BeginArray();
    ForEachShownRow(result, [&](const compare::ResultRow& row) { WriteJsonRow(json, row); });
    json.EndArray();
    if (details != nullptr) {
        json.Key("details");
        WriteDetailsJson(json, *details);
    }
    json.EndObject();
    out << '\n';
}

void WriteComparisonJson(std::ostream& out, const compare::ComparisonResult& result) {
    WriteDetailedJson(out, result, nullptr);
}

}  // namespace tavrel::report
