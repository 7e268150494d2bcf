// Writing the listing to a file.
#pragma once

#include <span>
#include <string>

#include "app/FileChooser.h"
#include "compare/ComparisonResult.h"
#include "platform/Dialogs.h"
#include "report/ComparisonFormats.h"

namespace tavrel::app {

using ReportFormatLine = report::ComparisonFormat;

/// What the window offers, in menu order.
std::span<const ReportFormatLine> ReportFormats();

/// Writes a file whole or not at all; false when that fails, a message box having said why.
bool SaveBytes(const std::string& path, const std::string& bytes, platform::MessageBox& messages);

/// Asks for a name and writes the comparison there, whole or not at all.  A failure is told in a message box.
/// `folder` is where the dialog begins; the name that it proposes is made of both databases'.  Returns the
/// path that was written; empty when there is none.
std::string SaveComparison(const compare::ComparisonResult& result, const ReportFormatLine& format,
                           const std::string& folder, FileChooser& files, platform::MessageBox& messages);

}  // namespace tavrel::app
