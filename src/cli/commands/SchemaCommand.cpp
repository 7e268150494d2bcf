#include "cli/Arguments.h"
#include "cli/Failure.h"
#include "cli/Messages.h"
#include "cli/Output.h"
#include "cli/TerminalProgress.h"
#include "compare/SchemaSnapshot.h"
#include "report/SchemaReport.h"
#include "workbench/Headless.h"

namespace tavrel::cli {

namespace {

class SchemaCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "schema"; }
    [[nodiscard]] const char* Description() const override {
        return "데이터베이스 하나의 구조를 필드마다 한 줄로 보여 줍니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddPassword(app, password_);
        AddText(app, "--table", table_, "테이블", "이 테이블만(대소문자 구분 안 함)");
        AddFormat(app, format_, {"text", "csv", "json"});
    }

    ExitCode Run() override {
        KeptMessages messages;
        const std::optional<compare::SchemaRows> schema = Read(messages);
        if (!schema) {
            messages.ComplainOfAll();
            return ExitCode::Failed;
        }
        if (!table_.empty() && !compare::ListsTable(file_, password_.value_or(""), table_)) {
            Complain("경고: '" + table_ + "' 테이블이 없습니다.");
        }
        Write(*schema);
        return ExitCode::Done;
    }

  private:
    std::optional<compare::SchemaRows> Read(KeptMessages& messages) {
        ProgressLine progress("구조를 읽는 중");
        return workbench::ReadSchema(
            {.path = file_, .password = password_.value_or(""), .table = table_},
            {.messages = messages, .phase = progress.Phase(), .overall = progress.Overall()});
    }

    void Write(const compare::SchemaRows& schema) const {
        if (format_ == "csv") {
            report::WriteSchemaCsv(StandardOutput(), schema);
        } else if (format_ == "json") {
            report::WriteSchemaJson(StandardOutput(), schema);
        } else {
            report::WriteSchemaText(StandardOutput(), schema, StyleOfStandardOutput());
        }
    }

    std::string file_;
    std::optional<std::string> password_;
    std::string table_;
    std::string format_ = "text";
};

}  // namespace

std::unique_ptr<Command> MakeSchemaCommand() {
    return std::make_unique<SchemaCommand>();
}

}  // namespace tavrel::cli
