// Many databases against one reference: a line for each and a total.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "report/TextTable.h"
#include "survey/Survey.h"

namespace tavrel::report {

struct SurveyResult {
    std::string reference;
    bool details = false;  ///< they were compared, too
    std::vector<survey::Outcome> outcomes;
    std::vector<std::string> pages;  ///< of each file, beside the index; empty: there are none
};

/// "500개 파일: 같음 497, 다름 2, 읽지 못함 1"
std::string SurveyMessage(const SurveyResult& result);

void WriteSurveyText(std::ostream& out, const SurveyResult& result, const TextStyle& style);

/// file, state (equal, different, failed), rows, tables, only_reference, only_file, a column for each cell of
/// a row, details, reason.
void WriteSurveyCsv(std::ostream& out, const SurveyResult& result);

/// {"reference", "files": [{"file", "state", "rows", …}, …], "equal", "different", "failed"}
void WriteSurveyJson(std::ostream& out, const SurveyResult& result);

/// A page that links to those of the files.
void WriteSurveyHtml(std::ostream& out, const SurveyResult& result);

}  // namespace tavrel::report
