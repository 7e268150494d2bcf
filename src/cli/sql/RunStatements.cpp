#include "cli/sql/RunStatements.h"

#include <algorithm>

#include "cli/Failure.h"
#include "cli/Output.h"
#include "cli/sql/StatementSplitter.h"
#include "report/DisplayText.h"
#include "text/Utf.h"

namespace tavrel::cli {

namespace {

/// In front of files that some editors write.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Enough of a statement to recognise it, on one line.
std::string Shortened(std::string_view statement) {
    constexpr std::size_t kCharacters = 200;
    constexpr const char* kBlanks = " \t\r\n";
    statement = statement.substr(0, statement.find_last_not_of(kBlanks) + 1);
    std::size_t at = std::min(statement.find_first_not_of(kBlanks), statement.size());
    const std::size_t first = at;
    for (std::size_t count = 0; at < statement.size() && count < kCharacters; ++count) {
        text::NextCodePoint(statement, at);
    }
    const std::string_view shown = statement.substr(first, at - first);
    return report::Printable(shown) + (at < statement.size() ? "…" : "");
}

bool RunAll(SqlConnection& connection, ResultWriter& writer, StatementSplitter& statements) {
    while (const auto statement = statements.Take()) {
        if (!RunStatement(connection, writer, *statement)) {
            return false;
        }
    }
    return true;
}

bool RunRest(SqlConnection& connection, ResultWriter& writer, StatementSplitter& statements) {
    const auto rest = statements.TakeRest();
    return !rest || RunStatement(connection, writer, *rest);
}

}  // namespace

void ComplainOf(const db::ProviderError& error) {
    StandardOutput().flush();
    Complain("오류 " + std::to_string(error.Number()) + " (엔진 " + std::to_string(error.EngineNumber()) +
             "): " + error.Description());
}

bool RunStatement(SqlConnection& connection, ResultWriter& writer, const std::string& statement) {
    try {
        StatementResult result = connection.Execute(statement);
        writer.Write(result);
        return true;
    } catch (const db::ProviderError& error) {
        ComplainOf(error);
        Complain("문장: " + Shortened(statement));
        return false;
    }
}

ExitCode RunTexts(SqlConnection& connection, ResultWriter& writer, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        StatementSplitter statements;
        statements.Feed(text);
        if (!RunAll(connection, writer, statements) || !RunRest(connection, writer, statements)) {
            return ExitCode::Failed;
        }
    }
    return EndOfStatements(connection);
}

ExitCode RunStream(SqlConnection& connection, ResultWriter& writer, std::istream& in) {
    StatementSplitter statements;
    std::string line;
    for (bool first = true; std::getline(in, line); first = false) {
        if (first && line.starts_with(kByteOrderMark)) {
            line.erase(0, kByteOrderMark.size());
        }
        statements.Feed(line + '\n');
        if (!RunAll(connection, writer, statements)) {
            return ExitCode::Failed;
        }
    }
    return RunRest(connection, writer, statements) ? EndOfStatements(connection) : ExitCode::Failed;
}

ExitCode EndOfStatements(const SqlConnection& connection) {
    if (!connection.InTransaction()) {
        return ExitCode::Done;
    }
    StandardOutput().flush();
    Complain("끝나지 않은 트랜잭션을 되돌렸습니다. COMMIT이 없습니다.");
    return ExitCode::Failed;
}

}  // namespace tavrel::cli
