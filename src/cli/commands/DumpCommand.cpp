#include "cli/Arguments.h"
#include "cli/OpenDatabase.h"
#include "cli/Output.h"
#include "cli/TerminalProgress.h"
#include "report/DatabaseDump.h"

namespace tavrel::cli {

namespace {

class DumpCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "dump"; }
    [[nodiscard]] const char* Description() const override {
        return "구조, 행 수, 행의 지문, 관계를 모두 JSON 하나로 보여 줍니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddPassword(app, password_);
        AddFlag(app, "--all", all_, "시스템 테이블도");
        AddFormat(app, format_, {"json"});
    }

    ExitCode Run() override {
        ProgressLine progress("읽는 중");
        const auto database = OpenToInspect(file_, password_);
        report::WriteDump(StandardOutput(), *database, {.systemTables = all_, .progress = &progress.Phase()});
        return ExitCode::Done;
    }

  private:
    std::string file_;
    std::optional<std::string> password_;
    bool all_ = false;
    std::string format_ = "json";
};

}  // namespace

std::unique_ptr<Command> MakeDumpCommand() {
    return std::make_unique<DumpCommand>();
}

}  // namespace tavrel::cli
