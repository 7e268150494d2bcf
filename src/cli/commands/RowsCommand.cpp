#include "cli/Arguments.h"
#include "cli/OpenDatabase.h"
#include "cli/Output.h"
#include "report/RowsReport.h"

namespace tavrel::cli {

namespace {

class RowsCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "rows"; }
    [[nodiscard]] const char* Description() const override {
        return "테이블의 모든 행을 저장된 순서로 보여 줍니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddText(app, "TABLE", table_, "", "테이블 이름(대소문자 구분 안 함)")->required();
        AddPassword(app, password_);
        AddFormat(app, format_, {"csv", "json"});
    }

    ExitCode Run() override {
        const auto database = OpenToInspect(file_, password_);
        if (format_ == "csv") {
            report::WriteRowsCsv(StandardOutput(), *database, table_);
        } else {
            report::WriteRowsJson(StandardOutput(), *database, table_);
        }
        return ExitCode::Done;
    }

  private:
    std::string file_;
    std::string table_;
    std::optional<std::string> password_;
    std::string format_ = "json";
};

}  // namespace

std::unique_ptr<Command> MakeRowsCommand() {
    return std::make_unique<RowsCommand>();
}

}  // namespace tavrel::cli
