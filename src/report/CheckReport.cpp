#include "report/CheckReport.h"

#include "report/DisplayText.h"
#include "report/JsonWriter.h"

namespace tavrel::report {

namespace {

using Severity = jet::Finding::Severity;

void WriteFinding(std::ostream& out, const jet::Finding& finding, const TextStyle& style) {
    const bool error = finding.severity == Severity::Error;
    out << Painted(error ? "오류" : "참고", error ? Paint::Mark : Paint::Caption, style) << ": "
        << Printable(finding.where) << ": " << Printable(finding.text) << '\n';
}

}  // namespace

void WriteCheckText(std::ostream& out, const jet::CheckReport& check, bool counts, const TextStyle& style) {
    for (const jet::Finding& finding : check.findings) {
        WriteFinding(out, finding, style);
    }
    if (counts) {
        for (const auto& [what, number] : check.counts) {
            out << "개수: " << what << ": " << number << '\n';
        }
    }
    if (check.findings.empty()) {
        out << "이상이 없습니다.\n";
    } else {
        out << "오류 " << check.Count(Severity::Error) << "건, 참고 " << check.Count(Severity::Note)
            << "건\n";
    }
}

void WriteCheckJson(std::ostream& out, const jet::CheckReport& check, std::string_view file) {
    JsonWriter json(out, JsonText::Utf8, JsonLayout::Indented);
    json.BeginObject();
    json.Member("file", file);
    json.Member("errors", static_cast<std::int64_t>(check.Count(Severity::Error)));
    json.Member("notes", static_cast<std::int64_t>(check.Count(Severity::Note)));
    json.Key("findings");
    json.BeginArray();
    for (const jet::Finding& finding : check.findings) {
        json.BeginObject(JsonLayout::OneLine);
        json.Member("severity", finding.severity == Severity::Error ? "error" : "note");
        json.Member("code", finding.code);
        json.Member("where", finding.where);
        json.Member("text", finding.text);
        json.EndObject();
    }
    json.EndArray();
    json.Key("counts");
    json.BeginObject();
    for (const auto& [what, number] : check.counts) {
        json.Member(what, static_cast<std::int64_t>(number));
    }
    json.EndObject();
    json.EndObject();
    out << '\n';
}

}  // namespace tavrel::report
