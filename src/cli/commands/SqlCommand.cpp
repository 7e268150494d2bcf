#include <iostream>

#include "cli/Arguments.h"
#include "cli/Output.h"
#include "cli/sql/SqlShell.h"
#include "platform/Console.h"
#include "platform/Keyboard.h"

namespace tavrel::cli {

namespace {

class SqlCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "sql"; }
    [[nodiscard]] const char* Description() const override {
        return "SQL 문을 실행합니다. 문장이 없으면 표준 입력에서 읽습니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        app.add_option("STATEMENT", statements_, "SQL 문(;으로 나누어 여러 개)")->type_name("");
        AddPassword(app, password_);
        AddFormat(app, format_, {"text", "csv", "json"});
    }

    ExitCode Run() override {
        try {
            SqlConnection connection(file_, password_.value_or(""));
            return Run(connection);
        } catch (const db::ProviderError& error) {
            ComplainOf(error);
            return ExitCode::Failed;
        }
    }

  private:
    ExitCode Run(SqlConnection& connection) {
        const auto writer = MakeResultWriter(format_);
        if (!statements_.empty()) {
            return RunTexts(connection, *writer, statements_);
        }
        if (platform::HasKeyboard() && platform::IsTerminal(platform::Stream::Output)) {
            return SqlShell(connection, *writer, file_, password_.value_or("")).Run();
        }
        // The output unties the streams from those of C when it is first used.  That must happen before the
        // first line is read: input that waits in the buffers of C would be lost.
        StandardOutput();
        return RunStream(connection, *writer, std::cin);
    }

    std::string file_;
    std::vector<std::string> statements_;
    std::optional<std::string> password_;
    std::string format_ = "text";
};

}  // namespace

std::unique_ptr<Command> MakeSqlCommand() {
    return std::make_unique<SqlCommand>();
}

}  // namespace tavrel::cli
