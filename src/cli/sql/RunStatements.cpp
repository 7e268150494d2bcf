#include "cli/sql/RunStatements.h"

#include <algorithm>

#include "cli/Failure.h"
#include "cli/Output.h"
#include "cli/sql/StatementSplitter.h"
#include "platform/Console.h"
#include "report/DisplayText.h"
#include "text/Utf.h"

namespace tavrel::cli {

namespace {

constexpr std::int32_t kInvalidCall = 5;

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

bool IsUtf8(std::string_view text) {
    return report::SoundUtf8(text) == text;
}

/// Always false: what could not be run.
bool Refuse(const Error& error) {
    StandardOutput().flush();
    Complain("오류 " + std::to_string(error.Number()) + ": " + error.Description());
    return false;
}

bool RunText(SqlConnection& connection, ResultWriter& writer, const std::string& text) {
    StatementSplitter statements;
    statements.Feed(text);
    return RunAll(connection, writer, statements) && RunRest(connection, writer, statements);
}

/// Lines as UTF-8, whatever the console writes.
class Lines {
  public:
    // A device that fails only sets a bit, and a line that cannot be read would look like the end of the
    // input.
    explicit Lines(std::istream& in) : in_(in) { in_.exceptions(std::ios_base::badbit); }

    /// False at the end.  Throws Error 5 for a line that makes no text, 57 when nothing can be read, and
    /// std::bad_alloc for a line that is too long.
    bool Next(std::string& line) {
        if (!Read(line)) {
            return false;
        }
        ++number_;
        if (number_ == 1 && line.starts_with(report::kByteOrderMark)) {
            line.erase(0, report::kByteOrderMark.size());
            marked_ = true;
        }
        if (!IsUtf8(line)) {
            std::optional<std::string> text = marked_ ? std::nullopt : platform::Utf8FromConsole(line);
            if (!text) {
                throw MakeError(kInvalidCall, {},
                                "표준 입력 " + std::to_string(number_) + "번째 줄이 UTF-8이 아님");
            }
            line = std::move(*text);
        }
        return true;
    }

  private:
    bool Read(std::string& line) {
        try {
            return static_cast<bool>(std::getline(in_, line));
        } catch (const std::ios_base::failure&) {
            throw MakeError(errors::kDeviceFault, {}, "표준 입력을 읽을 수 없음");
        }
    }

    std::istream& in_;
    std::uint64_t number_ = 0;
    bool marked_ = false;  ///< the first line says that all is UTF-8
};

bool RunLines(SqlConnection& connection, ResultWriter& writer, std::istream& in) {
    StatementSplitter statements;
    Lines lines(in);
    try {
        for (std::string line; lines.Next(line);) {
            statements.Feed(line + '\n');
            if (!RunAll(connection, writer, statements)) {
                return false;
            }
        }
    } catch (const Error& error) {
        return Refuse(error);
    }
    return RunRest(connection, writer, statements);
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
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const bool done =
            IsUtf8(texts[i])
                ? RunText(connection, writer, texts[i])
                : Refuse(MakeError(kInvalidCall, {}, std::to_string(i + 1) + "번째 SQL 문이 UTF-8이 아님"));
        if (!done) {
            return EndOfStatements(connection, false);
        }
    }
    return EndOfStatements(connection);
}

ExitCode RunStream(SqlConnection& connection, ResultWriter& writer, std::istream& in) {
    return EndOfStatements(connection, RunLines(connection, writer, in));
}

ExitCode EndOfStatements(const SqlConnection& connection, bool succeeded) {
    if (!connection.InTransaction()) {
        return succeeded ? ExitCode::Done : ExitCode::Failed;
    }
    StandardOutput().flush();
    Complain("끝나지 않은 트랜잭션을 되돌렸습니다. COMMIT이 없습니다.");
    return ExitCode::Failed;
}

}  // namespace tavrel::cli
