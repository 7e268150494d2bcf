#include "report/SurveyReport.h"

#include <algorithm>

#include "report/CsvWriter.h"
#include "report/DisplayText.h"
#include "report/HtmlPage.h"
#include "report/JsonWriter.h"
#include "report/SideCells.h"

namespace tavrel::report {

namespace {

using survey::Outcome;
using survey::State;

/// One number of a file, as all four forms show it.
struct CountColumn {
    std::string caption;  ///< for people
    std::string code;     ///< for programs
    int (*ofTally)(const survey::Tally& tally, std::size_t cell);
    std::size_t cell = 0;
};

/// Tables and fields, then the cells that can differ in a row of both sides.
std::vector<CountColumn> CountColumns(bool details) {
    std::vector<CountColumn> columns = {
        {"테이블", "tables", [](const survey::Tally& t, std::size_t) { return t.tables; }},
        {"기준에만", "only_reference", [](const survey::Tally& t, std::size_t) { return t.onlyReference; }},
        {"파일에만", "only_file", [](const survey::Tally& t, std::size_t) { return t.onlyFile; }}};
    for (std::size_t cell = 0; cell < compare::kCellCount; ++cell) {
        if (cell != kTableCell && cell != kFieldCell) {
            columns.push_back({std::string(CaptionOf(cell)), std::string(compare::kCellNames[cell]),
                               [](const survey::Tally& t, std::size_t place) { return t.cells.at(place); },
                               cell});
        }
    }
    if (details) {
        columns.push_back({"세부", "details", [](const survey::Tally& t, std::size_t) { return t.details; }});
    }
    return columns;
}

std::string_view CodeOf(State state) {
    return state == State::Equal ? "equal" : state == State::Different ? "different" : "failed";
}

std::string InWords(const Outcome& outcome) {
    switch (outcome.state) {
        case State::Equal:
            return "같음";
        case State::Different:
            return "다름";
        default:
            return "읽지 못함";
    }
}

std::int64_t CountOf(const SurveyResult& result, State state) {
    return std::ranges::count(result.outcomes, state, &Outcome::state);
}

/// File, state, rows, the counts, why not; the captions for no outcome.
std::vector<std::string> CellsOf(const Outcome* outcome, const std::vector<CountColumn>& columns) {
    const bool compared = outcome != nullptr && outcome->state == State::Different;
    std::vector<std::string> cells;
    if (outcome == nullptr) {
        cells = {"파일", "결과", "다른 행"};
    } else {
        cells = {outcome->path, InWords(*outcome), compared ? std::to_string(outcome->rows) : ""};
    }
    for (const CountColumn& column : columns) {
        const int count = compared ? column.ofTally(outcome->tally, column.cell) : 0;
        cells.push_back(outcome == nullptr ? column.caption : count == 0 ? "" : std::to_string(count));
    }
    cells.push_back(outcome == nullptr ? "까닭" : outcome->reason);
    return cells;
}

std::vector<TextCell> TextOf(const std::vector<std::string>& cells, Paint paint) {
    std::vector<TextCell> row;
    for (const std::string& cell : cells) {
        row.push_back({.text = cell, .paint = cell.empty() ? Paint::None : paint});
    }
    return row;
}

/// The name of a page as a link has it: what is not plain becomes %XX.
std::string LinkTo(const std::string& page) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string link;
    for (const char c : page) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                           c == '.' || c == '-' || c == '_';
        link += plain ? std::string(1, c) : std::string{'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return "./" + link;
}

}  // namespace

std::string SurveyMessage(const SurveyResult& result) {
    return std::to_string(result.outcomes.size()) + "개 파일: 같음 " +
           std::to_string(CountOf(result, State::Equal)) + ", 다름 " +
           std::to_string(CountOf(result, State::Different)) + ", 읽지 못함 " +
           std::to_string(CountOf(result, State::Failed));
}

void WriteSurveyText(std::ostream& out, const SurveyResult& result, const TextStyle& style) {
    const std::vector<CountColumn> columns = CountColumns(result.details);
    std::vector<std::vector<std::string>> rows = {CellsOf(nullptr, columns)};
    for (const Outcome& outcome : result.outcomes) {
        rows.push_back(CellsOf(&outcome, columns));
    }
    TextTable table(rows.front().size(), style);
    for (const std::vector<std::string>& row : rows) {
        table.Measure(TextOf(row, Paint::None));
    }
    out << "기준: " << Printable(result.reference) << "\n\n";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        table.Write(out, TextOf(rows[i], i == 0 ? Paint::Caption : Paint::None));
        if (i == 0) {
            table.WriteRule(out);
        }
    }
    out << '\n' << Painted(SurveyMessage(result), Paint::Caption, style) << '\n';
}

void WriteSurveyCsv(std::ostream& out, const SurveyResult& result) {
    const std::vector<CountColumn> columns = CountColumns(result.details);
    CsvWriter csv(out);
    csv.Field("file");
    csv.Field("state");
    csv.Field("rows");
    for (const CountColumn& column : columns) {
        csv.Field(column.code);
    }
    csv.Field("reason");
    csv.EndRow();
    for (const Outcome& outcome : result.outcomes) {
        csv.Field(outcome.path);
        csv.Field(CodeOf(outcome.state));
        csv.Field(std::to_string(outcome.rows));
        for (const CountColumn& column : columns) {
            csv.Field(std::to_string(column.ofTally(outcome.tally, column.cell)));
        }
        csv.Field(outcome.reason);
        csv.EndRow();
    }
}

void WriteSurveyJson(std::ostream& out, const SurveyResult& result) {
    const std::vector<CountColumn> columns = CountColumns(result.details);
    JsonWriter json(out, JsonText::Utf8, JsonLayout::Indented);
    json.BeginObject();
    json.Member("reference", result.reference);
    json.Key("files");
    json.BeginArray();
    for (const Outcome& outcome : result.outcomes) {
        json.BeginObject(JsonLayout::OneLine);
        json.Member("file", outcome.path);
        json.Member("state", CodeOf(outcome.state));
        json.Member("rows", std::int64_t{outcome.rows});
        for (const CountColumn& column : columns) {
            json.Member(column.code, std::int64_t{column.ofTally(outcome.tally, column.cell)});
        }
        json.Member("reason", outcome.reason);
        json.EndObject();
    }
    json.EndArray();
    json.Member("equal", CountOf(result, State::Equal));
    json.Member("different", CountOf(result, State::Different));
    json.Member("failed", CountOf(result, State::Failed));
    json.EndObject();
    out << '\n';
}

void WriteSurveyHtml(std::ostream& out, const SurveyResult& result) {
    const std::vector<CountColumn> columns = CountColumns(result.details);
    WriteHtmlHead(out, "DB 구조 비교");
    out << "<body>\n<header>\n<h1>DB 구조 비교</h1>\n<p>" << HtmlText(SurveyMessage(result))
        << "</p>\n<div>기준: " << HtmlText(result.reference)
        << "</div>\n</header>\n<main>\n<table>\n<thead><tr>";
    for (const std::string& caption : CellsOf(nullptr, columns)) {
        out << "<th scope=\"col\">" << HtmlText(caption) << "</th>";
    }
    out << "</tr></thead>\n<tbody>\n";
    for (std::size_t i = 0; i < result.outcomes.size(); ++i) {
        const Outcome& outcome = result.outcomes[i];
        const std::vector<std::string> cells = CellsOf(&outcome, columns);
        const bool linked = !result.pages.empty() && outcome.state != State::Failed;
        out << "<tr>";
        for (std::size_t cell = 0; cell < cells.size(); ++cell) {
            out << "<td>";
            if (cell == 0 && linked) {
                out << "<a href=\"" << LinkTo(result.pages[i]) << "\">" << HtmlText(cells[cell]) << "</a>";
            } else {
                out << HtmlText(cells[cell]);
            }
            out << "</td>";
        }
        out << "</tr>\n";
    }
    out << "</tbody>\n</table>\n</main>\n</body>\n</html>\n";
}

}  // namespace tavrel::report
