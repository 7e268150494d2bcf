#include "cli/Arguments.h"
#include "cli/OpenDatabase.h"
#include "cli/Output.h"
#include "report/InfoReport.h"

namespace tavrel::cli {

namespace {

class InfoCommand : public Command {
  public:
    [[nodiscard]] const char* Name() const override { return "info"; }
    [[nodiscard]] const char* Description() const override {
        return "버전, 정렬 순서, 암호 여부, 테이블 수, 크기를 보여 줍니다.";
    }

    void Declare(CLI::App& app) override {
        AddFile(app, file_);
        AddPassword(app, password_);
        AddFormat(app, format_, {"text", "json"});
    }

    ExitCode Run() override {
        const auto database = OpenToInspect(file_, password_);
        if (format_ == "json") {
            report::WriteInfoJson(StandardOutput(), *database);
        } else {
            report::WriteInfoText(StandardOutput(), *database, StyleOfStandardOutput());
        }
        return ExitCode::Done;
    }

  private:
    std::string file_;
    std::optional<std::string> password_;
    std::string format_ = "text";
};

}  // namespace

std::unique_ptr<Command> MakeInfoCommand() {
    return std::make_unique<InfoCommand>();
}

}  // namespace tavrel::cli
