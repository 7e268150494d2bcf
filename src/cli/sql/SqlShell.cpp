#include "cli/sql/SqlShell.h"

#include "cli/Failure.h"
#include "cli/Messages.h"
#include "cli/OpenDatabase.h"
#include "cli/Output.h"
#include "report/DisplayText.h"
#include "report/SchemaReport.h"
#include "report/TableList.h"
#include "workbench/Headless.h"

namespace tavrel::cli {

namespace {

constexpr const char* kPrompt = "sql> ";
constexpr const char* kOpenPrompt = "...> ";
constexpr const char* kAroundCommands = " \t;";

/// A progress bar that nobody sees.
class NoProgress : public platform::ProgressBar {
  public:
    void SetMaximum(int /*maximum*/) override {}
    void SetValue(int value) override { value_ = value; }
    [[nodiscard]] int Value() const override { return value_; }
    void SetVisible(bool /*visible*/) override {}

  private:
    int value_ = 0;
};

std::string WithoutBlanks(const std::string& text) {
    const std::size_t first = text.find_first_not_of(kAroundCommands);
    return first == std::string::npos
               ? std::string()
               : text.substr(first, text.find_last_not_of(kAroundCommands) + 1 - first);
}

}  // namespace

const SqlShell::DotCommand SqlShell::kCommands[] = {
    {".tables", "", "테이블 이름을 보여 줍니다.", &SqlShell::ShowTables},
    {".schema", "테이블", "테이블의 구조를 보여 줍니다. 이름이 없으면 모든 테이블을 보여 줍니다.",
     &SqlShell::ShowSchema},
    {".help", "", "이 도움말을 보여 줍니다.", &SqlShell::ShowHelp},
    {".quit", "", "끝냅니다. (Ctrl+D)", &SqlShell::Quit},
};

SqlShell::SqlShell(SqlConnection& connection, ResultWriter& writer, std::string path, std::string password)
    : connection_(connection),
      writer_(writer),
      path_(std::move(path)),
      password_(std::move(password)),
      editor_(StandardOutput()) {}

ExitCode SqlShell::Run() {
    StandardOutput() << "문장은 ;으로 끝냅니다. 도움말은 .help\n";
    while (!ended_) {
        const TypedLine line = editor_.ReadLine(statements_.IsOpen() ? kOpenPrompt : kPrompt);
        if (line.outcome == TypedLine::Outcome::EndOfInput) {
            break;
        }
        if (line.outcome == TypedLine::Outcome::Cancelled) {
            statements_ = {};
            typed_.clear();
        } else {
            Take(line.text);
        }
    }
    return EndOfStatements(connection_);
}

void SqlShell::Take(const std::string& line) {
    typed_ += (typed_.empty() ? "" : " ") + line;
    const std::string command = WithoutBlanks(line);
    if (!statements_.IsOpen() && command.starts_with('.')) {
        RunDotCommand(command);
    } else {
        statements_.Feed(line + '\n');
        while (const auto statement = statements_.Take()) {
            RunStatement(connection_, writer_, *statement);
        }
    }
    if (!statements_.IsOpen()) {
        editor_.Remember(typed_);
        typed_.clear();
    }
}

void SqlShell::RunDotCommand(const std::string& line) {
    const std::size_t end = line.find_first_of(kAroundCommands);
    const std::string name = line.substr(0, end);
    for (const DotCommand& command : kCommands) {
        if (command.name == name) {
            try {
                (this->*command.run)(end == std::string::npos ? "" : WithoutBlanks(line.substr(end)));
            } catch (const Error& error) {
                Complain("오류 " + std::to_string(error.Number()) + ": " + error.Description());
            }
            return;
        }
    }
    Complain("모르는 명령입니다: " + name + " (도움말은 .help)");
}

void SqlShell::ShowTables(const std::string& /*argument*/) {
    report::WriteTableNames(StandardOutput(), *OpenToInspect(path_, password_), false);
}

void SqlShell::ShowSchema(const std::string& argument) {
    KeptMessages messages;
    NoProgress phase;
    NoProgress overall;
    const auto schema = workbench::ReadSchema({.path = path_, .password = password_, .table = argument},
                                              {.messages = messages, .phase = phase, .overall = overall});
    if (schema) {
        report::WriteSchemaText(StandardOutput(), *schema, StyleOfStandardOutput());
    } else {
        messages.ComplainOfAll();
    }
}

void SqlShell::ShowHelp(const std::string& /*argument*/) {
    constexpr std::size_t kColumns = 18;
    for (const DotCommand& command : kCommands) {
        StandardOutput() << report::PadRight(std::string(command.name) + " " + command.arguments, kColumns)
                         << command.description << '\n';
    }
}

void SqlShell::Quit(const std::string& /*argument*/) {
    ended_ = true;
}

}  // namespace tavrel::cli
