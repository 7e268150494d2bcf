#include "report/DetailsReport.h"

#include <array>

#include "details/Words.h"
#include "report/CsvWriter.h"
#include "report/HtmlPage.h"

namespace tavrel::report {

namespace {

using details::Difference;
using details::Where;

constexpr std::array<std::string_view, 6> kCaptions = {"구분", "테이블", "이름", "항목", "A", "B"};

/// One line of the listing: one aspect of a thing that both have, or all that is to say of one that stands on
/// one side.
struct DetailLine {
    const Difference* of;
    std::string_view item;      ///< for people
    std::string_view itemCode;  ///< for programs
    std::string a, b;

    [[nodiscard]] std::string_view Name() const {
        return of->subject == details::Subject::Table ? std::string_view() : std::string_view(of->name);
    }
    [[nodiscard]] std::array<std::string_view, kCaptions.size()> Cells() const {
        return {details::WordFor(of->subject), of->table, Name(), item, a, b};
    }
};

std::vector<DetailLine> LinesOf(const Details& details) {
    std::vector<DetailLine> lines;
    for (const Difference& difference : details) {
        if (difference.where != Where::Both) {
            lines.push_back({&difference, details::WordFor(difference.where), "only",
                             details::Summary(difference.a), details::Summary(difference.b)});
        }
        for (const details::Aspect aspect : difference.aspects) {
            lines.push_back({&difference, details::WordFor(aspect), details::CodeFor(aspect),
                             std::string(details::TextOf(difference.a, aspect)),
                             std::string(details::TextOf(difference.b, aspect))});
        }
    }
    return lines;
}

using DetailRow = std::array<TextCell, kCaptions.size()>;

DetailRow DetailCaptions() {
    DetailRow row;
    for (std::size_t i = 0; i < row.size(); ++i) {
        row[i] = {.text = kCaptions[i], .paint = Paint::Caption};
    }
    return row;
}

DetailRow TextOf(const DetailLine& line) {
    DetailRow row;
    const auto cells = line.Cells();
    for (std::size_t i = 0; i < row.size(); ++i) {
        row[i].text = cells[i];
    }
    const Paint paint = line.of->where == Where::Both ? Paint::Different : Paint::OneSided;
    for (std::size_t i = row.size() - 2; i < row.size(); ++i) {
        row[i].paint = row[i].text.empty() ? Paint::None : paint;
    }
    return row;
}

void WriteFacts(JsonWriter& json, std::string_view key, const details::Facts& facts) {
    json.Key(key);
    if (facts.empty()) {
        json.Null();
        return;
    }
    json.BeginObject();
    for (const details::Fact& fact : facts) {
        json.Member(details::CodeFor(fact.aspect), fact.text);
    }
    json.EndObject();
}

}  // namespace

std::string DetailsMessage(const Details& details) {
    return details.empty() ? "세부 차이가 없습니다."
                           : "세부 차이가 " + std::to_string(details.size()) + "건 있습니다.";
}

void WriteDetailsText(std::ostream& out, const Details& details, const TextStyle& style) {
    out << '\n';
    if (!details.empty()) {
        const std::vector<DetailLine> lines = LinesOf(details);
        TextTable table(kCaptions.size(), style);
        table.Measure(DetailCaptions());
        for (const DetailLine& line : lines) {
            table.Measure(TextOf(line));
        }
        table.Write(out, DetailCaptions());
        table.WriteRule(out);
        for (const DetailLine& line : lines) {
            table.Write(out, TextOf(line));
        }
        out << '\n';
    }
    out << Painted(DetailsMessage(details), Paint::Caption, style) << '\n';
}

void WriteDetailsCsv(std::ostream& out, const Details& details) {
    CsvWriter csv(out);
    csv.EndRow();
    csv.Row({"kind", "table", "name", "item", "a", "b"});
    for (const DetailLine& line : LinesOf(details)) {
        csv.Row({std::string(details::CodeFor(line.of->subject)), line.of->table, std::string(line.Name()),
                 std::string(line.itemCode), line.a, line.b});
    }
}

void WriteDetailsJson(JsonWriter& json, const Details& details) {
    json.BeginArray();
    for (const Difference& difference : details) {
        json.BeginObject(JsonLayout::OneLine);
        json.Member("kind", details::CodeFor(difference.subject));
        json.Member("table", difference.table);
        json.Member("name", difference.name);
        json.Key("differs");
        json.BeginArray();
        for (const details::Aspect aspect : difference.aspects) {
            json.String(details::CodeFor(aspect));
        }
        json.EndArray();
        WriteFacts(json, "a", difference.a);
        WriteFacts(json, "b", difference.b);
        json.EndObject();
    }
    json.EndArray();
}

void WriteDetailsHtml(std::ostream& out, const Details& details) {
    out << "<section>\n<h2>세부 차이</h2>\n<p>" << HtmlText(DetailsMessage(details)) << "</p>\n";
    if (!details.empty()) {
        out << "<table>\n<thead><tr>";
        for (const std::string_view caption : kCaptions) {
            out << "<th scope=\"col\">" << HtmlText(caption) << "</th>";
        }
        out << "</tr></thead>\n<tbody>\n";
        for (const DetailLine& line : LinesOf(details)) {
            out << "<tr>";
            for (const std::string_view cell : line.Cells()) {
                out << "<td>" << HtmlText(cell) << "</td>";
            }
            out << "</tr>\n";
        }
        out << "</tbody>\n</table>\n";
    }
    out << "</section>\n";
}

}  // namespace tavrel::report
