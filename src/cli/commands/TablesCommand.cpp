#include "cli/Arguments.h"
#include "cli/OpenDatabase.h"
#include "cli/Output.h"
#include "report/TableList.h"

namespace tavrel::cli {

namespace {

class TablesCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "tables"; }
    [[nodiscard]] const char* Description() const override {
        return "테이블 이름을 한 줄에 하나씩 보여 줍니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddPassword(app, password_);
        AddFlag(app, "--all", all_, "시스템 테이블도");
        AddFormat(app, format_, {"text", "csv", "json"});
    }

    ExitCode Run() override {
        const auto database = OpenToInspect(file_, password_);
        if (format_ == "csv") {
            report::WriteTableListCsv(StandardOutput(), *database, all_);
        } else if (format_ == "json") {
            report::WriteTableListJson(StandardOutput(), *database, all_);
        } else {
            report::WriteTableNames(StandardOutput(), *database, all_);
        }
        return ExitCode::Done;
    }

  private:
    std::string file_;
    std::optional<std::string> password_;
    bool all_ = false;
    std::string format_ = "text";
};

}  // namespace

std::unique_ptr<Command> MakeTablesCommand() {
    return std::make_unique<TablesCommand>();
}

}  // namespace tavrel::cli
