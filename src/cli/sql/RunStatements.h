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

/// Statements until one fails; every text may hold several.
ExitCode RunTexts(SqlConnection& connection, ResultWriter& writer, const std::vector<std::string>& texts);
/// The same out of a stream, each as soon as its semicolon has been read.
ExitCode RunStream(SqlConnection& connection, ResultWriter& writer, std::istream& in);

/// Done; Failed, with a message, when a transaction is left open: what it did is undone.
ExitCode EndOfStatements(const SqlConnection& connection);

}  // namespace tavrel::cli
