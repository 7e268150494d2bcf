// Statements run one after the other.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/sql/ResultWriter.h"
#include "cli/sql/SqlConnection.h"
#include "db/AdoErrors.h"

namespace tavrel::cli {

/// "오류 -2147217865 (엔진 3078): …" on standard error, behind the output so far.
void ComplainOf(const db::ProviderError& error);

/// Runs a statement and writes what it gives.  False when it failed: number, text and statement have been
/// written to standard error.
bool RunStatement(SqlConnection& connection, ResultWriter& writer, const std::string& statement);

/// Statements until one fails; every text may hold several.  A text that is not UTF-8 is refused, with its
/// place.
ExitCode RunTexts(SqlConnection& connection, ResultWriter& writer, const std::vector<std::string>& texts);
/// The same out of a stream, each as soon as its semicolon has been read.  A line that is neither UTF-8 nor
/// in the console's own code page is refused, with its number: what would be stored is not what was meant.
ExitCode RunStream(SqlConnection& connection, ResultWriter& writer, std::istream& in);

/// How the statements ended, when `succeeded` says that all of them ran: Done, else Failed.  A transaction
/// that is left open is a failure too, with a message: what it did is undone.
ExitCode EndOfStatements(const SqlConnection& connection, bool succeeded = true);

}  // namespace tavrel::cli
