#include "report/ComparisonFormats.h"

#include <algorithm>
#include <array>

#include "report/ComparisonReport.h"
#include "report/DisplayText.h"
#include "report/HtmlReport.h"

namespace tavrel::report {

namespace {

void WriteText(std::ostream& out, const compare::ComparisonResult& result, const Details* details,
               const TextStyle& style) {
    WriteComparisonText(out, result, style);
    if (details != nullptr) {
        WriteDetailsText(out, *details, style);
    }
}

template <void (*kWriteRows)(std::ostream&, const compare::ComparisonResult&)>
void WriteCsv(std::ostream& out, const compare::ComparisonResult& result, const Details* details,
              const TextStyle& /*style*/) {
    kWriteRows(out, result);
    if (details != nullptr) {
        WriteDetailsCsv(out, *details);
    }
}

/// A writer that puts the details in its own place and knows no style.
template <void (*kWrite)(std::ostream&, const compare::ComparisonResult&, const Details*)>
void Unstyled(std::ostream& out, const compare::ComparisonResult& result, const Details* details,
              const TextStyle& /*style*/) {
    kWrite(out, result, details);
}

template <void (*kWrite)(std::ostream&, const SurveyResult&)>
void UnstyledSurvey(std::ostream& out, const SurveyResult& result, const TextStyle& /*style*/) {
    kWrite(out, result);
}

void WriteSurveyCsvFile(std::ostream& out, const SurveyResult& result) {
    out << kByteOrderMark;
    WriteSurveyCsv(out, result);
}

constexpr std::array<ComparisonFormat, 4> kFormats = {{
    {.name = "text",
     .write = WriteText,
     .writeFile = WriteText,
     .writeSurvey = WriteSurveyText,
     .writeSurveyFile = WriteSurveyText},
    {.name = "csv",
     .write = WriteCsv<WriteComparisonCsv>,
     .writeFile = WriteCsv<WriteComparisonCsvFile>,
     .writeSurvey = UnstyledSurvey<WriteSurveyCsv>,
     .writeSurveyFile = UnstyledSurvey<WriteSurveyCsvFile>,
     .menuPlace = 2,
     .command = "CSV로 저장…",
     .filter = "CSV (*.csv)",
     .suffix = ".csv"},
    {.name = "json",
     .write = Unstyled<WriteDetailedJson>,
     .writeFile = Unstyled<WriteDetailedJson>,
     .writeSurvey = UnstyledSurvey<WriteSurveyJson>,
     .writeSurveyFile = UnstyledSurvey<WriteSurveyJson>,
     .menuPlace = 3,
     .command = "JSON으로 저장…",
     .filter = "JSON (*.json)",
     .suffix = ".json"},
    {.name = "html",
     .write = Unstyled<WriteDetailedHtml>,
     .writeFile = Unstyled<WriteDetailedHtml>,
     .writeSurvey = UnstyledSurvey<WriteSurveyHtml>,
     .writeSurveyFile = UnstyledSurvey<WriteSurveyHtml>,
     .menuPlace = 1,
     .command = "HTML로 저장…",
     .filter = "HTML (*.html)",
     .suffix = ".html"},
}};

}  // namespace

std::span<const ComparisonFormat> ComparisonFormats() {
    return kFormats;
}

const ComparisonFormat* ComparisonFormatNamed(std::string_view name) {
    const auto* const found = std::ranges::find(kFormats, name, &ComparisonFormat::name);
    return found == kFormats.end() ? nullptr : found;
}

}  // namespace tavrel::report
