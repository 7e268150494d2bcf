// The formats in which a finished comparison is written: the one table for the command line and for the
// window.
#pragma once

#include <ostream>
#include <span>
#include <string_view>

#include "compare/ComparisonResult.h"
#include "report/DetailsReport.h"
#include "report/SurveyReport.h"
#include "report/TextTable.h"

namespace tavrel::report {

struct ComparisonFormat {
    /// `details`: null when they were not compared.
    using Writer = void (*)(std::ostream& out, const compare::ComparisonResult& result,
                            const Details* details, const TextStyle& style);

    /// Of many databases against one reference.
    using SurveyWriter = void (*)(std::ostream& out, const SurveyResult& result, const TextStyle& style);

    std::string_view name;  ///< as the command line takes it
    Writer write;           ///< to a terminal or a pipe
    Writer writeFile;       ///< to a file of its own
    SurveyWriter writeSurvey;
    SurveyWriter writeSurveyFile;
    // What the window's menu and its save dialog show; places count from 1 in menu order, 0: the window does
    // not offer the format.
    int menuPlace = 0;
    const char* command = "";
    const char* filter = "";
    const char* suffix = "";  ///< with its point
};

/// In the order in which the command line names them; the first is what it writes unasked.
std::span<const ComparisonFormat> ComparisonFormats();

/// Null when there is none of that name.
const ComparisonFormat* ComparisonFormatNamed(std::string_view name);

}  // namespace tavrel::report
